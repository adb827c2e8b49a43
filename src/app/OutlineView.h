/// The list of the window: a tree whose rows are counted from the top down as they are shown.
#pragma once

#include <QModelIndex>
#include <QPoint>
#include <QSet>
#include <QTreeView>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace nivor {

class ObjectInfoData;
class ObjectListModel;

/// Keeps the selection, the place in the list and, unless it is expanded anew, the closed folders
/// over a reload, as far as the objects are still there.
class OutlineView : public QTreeView {
public:
    explicit OutlineView(ObjectListModel& model);

    /// What the user does with the mouse. None may be absent when the user gets to it.
    struct Actions {
        std::function<void()> wasClicked;
        std::function<void()> selectionChanged;
        std::function<void()> wasReloaded;
        std::function<void()> dragWanted;  ///< the selected rows are to be dragged out
        std::function<void(const QPoint& global)> contextMenuWanted;
    };
    void setActions(Actions actions) { actions_ = std::move(actions); }

    /// Shows what the model's list holds now; `reload` makes the model read it.
    void reloadKeepingPlace(const std::function<void()>& reload);

    /// Asks the delegate for every row's height anew.
    void layOutRowsKeepingPlace();

    /// Opens every folder.
    void expandAllItems();

    /// Rows that are shown: those in closed folders don't count.
    [[nodiscard]] int numberOfRows() const { return static_cast<int>(visibleRows().size()); }
    [[nodiscard]] const std::vector<int>& selectedRowIndexes() const;
    [[nodiscard]] int numberOfSelectedRows() const
    {
        return static_cast<int>(selectedRowIndexes().size());
    }
    [[nodiscard]] std::shared_ptr<ObjectInfoData> itemAtRow(int row) const;

    /// The row under the context menu, while that is open; -1 otherwise.
    [[nodiscard]] int clickedRow() const;

    void selectAll() override;
    void deselectAll() { clearSelection(); }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    /// What the mouse does between press and release.
    enum class Gesture { None, Undecided, Dragging, Selecting };

    /// Objects rather than rows: rows change with every reload.
    struct Place {
        std::vector<std::shared_ptr<ObjectInfoData>> selected;
        QSet<const ObjectInfoData*> closed;
        const ObjectInfoData* current = nullptr;
        int currentRow = -1;
        const ObjectInfoData* top = nullptr;
        int topOffset = 0;
    };

    [[nodiscard]] const std::vector<QModelIndex>& visibleRows() const;
    void forgetRows();
    [[nodiscard]] Place place() const;
    void restore(const Place& place);
    void select(const std::vector<QModelIndex>& rows);
    void beginGesture(const QPoint& position);
    [[nodiscard]] bool canDragFrom(const QPoint& position) const;

    ObjectListModel& objects_;
    Actions actions_;
    mutable std::vector<QModelIndex> visibleRows_;
    mutable bool rowsAreKnown_ = false;
    mutable std::vector<int> selectedRows_;
    mutable bool selectionIsKnown_ = false;
    bool isAllExpanded_ = false;

    Gesture gesture_ = Gesture::None;
    QPoint pressedAt_;
    std::shared_ptr<ObjectInfoData> clicked_;
    bool isReloading_ = false;
};

}  // namespace nivor
