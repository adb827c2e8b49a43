#include "app/OutlineView.h"

#include "app/IconSet.h"
#include "app/ObjectListModel.h"
#include "datasets/ObjectInfoData.h"

#include <QApplication>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace nivor {
namespace {

constexpr int mostRowsByPixel = 20'000;
constexpr int arrowWidth = 16;
constexpr int iconWidth = 16;
constexpr int iconMargin = 3;

}  // namespace

OutlineView::OutlineView(ObjectListModel& model)
    : objects_(model)
{
    setModel(&model);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setUniformRowHeights(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setExpandsOnDoubleClick(true);
    // Drags are begun here, by horizontal motion only.
    setDragEnabled(false);
    setIndentation(arrowWidth + iconWidth + iconMargin);
    setAnimated(false);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    header()->setStretchLastSection(false);

    connect(&model, &QAbstractItemModel::modelReset, this, [this] { forgetRows(); });
    // Rows that come and go with a folder count as selected or not.
    const auto rowsChanged = [this] {
        forgetRows();
        if (!isReloading_)
            actions_.selectionChanged();
    };
    connect(this, &QTreeView::expanded, this, rowsChanged);
    connect(this, &QTreeView::collapsed, this, [this, rowsChanged] {
        isAllExpanded_ = false;
        rowsChanged();
    });
}

const std::vector<QModelIndex>& OutlineView::visibleRows() const
{
    if (std::exchange(rowsAreKnown_, true))
        return visibleRows_;
    visibleRows_.clear();
    // A stack of one's own: nothing says how deep a camera's folders go.
    std::vector<QModelIndex> pending;
    const auto addContents = [&](const QModelIndex& parent) {
        for (int row = objects_.rowCount(parent); row-- > 0;)
            pending.push_back(objects_.index(row, ObjectListModel::NameColumn, parent));
    };
    addContents({});
    while (!pending.empty()) {
        const QModelIndex next = pending.back();
        pending.pop_back();
        visibleRows_.push_back(next);
        if (isExpanded(next))
            addContents(next);
    }
    return visibleRows_;
}

const std::vector<int>& OutlineView::selectedRowIndexes() const
{
    if (std::exchange(selectionIsKnown_, true))
        return selectedRows_;
    selectedRows_.clear();
    const QItemSelection selection = selectionModel()->selection();
    if (selection.isEmpty())
        return selectedRows_;
    std::vector<bool> isSelected(static_cast<std::size_t>(objects_.size()) + 1, false);
    for (const QItemSelectionRange& range : selection) {
        const quintptr first =
            objects_.index(range.top(), ObjectListModel::NameColumn, range.parent()).internalId();
        for (int i = 0; i < range.height(); ++i)
            isSelected[first + static_cast<quintptr>(i)] = true;
    }
    const std::vector<QModelIndex>& visible = visibleRows();
    for (std::size_t i = 0; i < visible.size(); ++i) {
        if (isSelected[visible[i].internalId()])
            selectedRows_.push_back(static_cast<int>(i));
    }
    return selectedRows_;
}

void OutlineView::forgetRows()
{
    rowsAreKnown_ = false;
    selectionIsKnown_ = false;
}

std::shared_ptr<ObjectInfoData> OutlineView::itemAtRow(int row) const
{
    const std::vector<QModelIndex>& visible = visibleRows();
    const auto index = static_cast<std::size_t>(row);
    return row >= 0 && index < visible.size() ? objects_.object(visible[index]) : nullptr;
}

int OutlineView::clickedRow() const
{
    const QModelIndex clicked = objects_.indexOf(clicked_.get());
    if (!clicked.isValid())
        return -1;
    const std::vector<QModelIndex>& visible = visibleRows();
    const auto found = std::find(visible.begin(), visible.end(), clicked);
    return found == visible.end() ? -1 : static_cast<int>(found - visible.begin());
}

void OutlineView::expandAllItems()
{
    if (isAllExpanded_)
        return;
    isReloading_ = true;
    expandAll();
    isReloading_ = false;
    isAllExpanded_ = true;
    forgetRows();
}

void OutlineView::selectAll()
{
    select(visibleRows());
}

/// One range for the rows of a folder that lie side by side: to add row after row takes a time that
/// grows with the square of their number.
void OutlineView::select(const std::vector<QModelIndex>& rows)
{
    QItemSelection selection;
    const auto last = [](const QModelIndex& index) {
        return index.siblingAtColumn(ObjectListModel::columnTotal - 1);
    };
    // Neighbours in a folder have neighbouring numbers; the first of a folder has row 0.
    std::vector<QModelIndex> sorted = rows;
    std::sort(sorted.begin(), sorted.end(), [](const QModelIndex& a, const QModelIndex& b) {
        return a.internalId() < b.internalId();
    });
    for (std::size_t i = 0; i < sorted.size();) {
        std::size_t end = i + 1;
        while (end < sorted.size() && sorted[end].internalId() == sorted[end - 1].internalId() + 1
               && sorted[end].row() == sorted[end - 1].row() + 1)
            ++end;
        selection.append(QItemSelectionRange(sorted[i], last(sorted[end - 1])));
        i = end;
    }
    clearSelection();
    selectionModel()->select(selection, QItemSelectionModel::Select);
}

OutlineView::Place OutlineView::place() const
{
    Place place;
    for (const int row : selectedRowIndexes())
        place.selected.push_back(itemAtRow(row));
    if (!isAllExpanded_) {
        for (const QModelIndex& index : visibleRows()) {
            if (objects_.hasChildren(index) && !isExpanded(index))
                place.closed.insert(objects_.object(index).get());
        }
    }
    const QModelIndex current = currentIndex().siblingAtColumn(ObjectListModel::NameColumn);
    if (current.isValid()) {
        place.current = objects_.object(current).get();
        const auto found = std::find(visibleRows().begin(), visibleRows().end(), current);
        place.currentRow = static_cast<int>(found - visibleRows().begin());
    }
    const QModelIndex top = indexAt({0, 0});
    place.top = objects_.object(top).get();
    place.topOffset = visualRect(top).top();
    return place;
}

void OutlineView::restore(const Place& place)
{
    for (const ObjectInfoData* folder : place.closed) {
        if (const QModelIndex index = objects_.indexOf(folder); index.isValid())
            collapse(index);
    }
    std::vector<QModelIndex> rows;
    for (const auto& object : place.selected) {
        if (const QModelIndex index = objects_.indexOf(object.get()); index.isValid())
            rows.push_back(index);
    }
    QModelIndex current = objects_.indexOf(place.current);
    // In the place of one that is gone comes its neighbour.
    if (!current.isValid() && place.currentRow >= 0 && numberOfRows() > 0) {
        const int row = std::min(place.currentRow, numberOfRows() - 1);
        current = visibleRows()[static_cast<std::size_t>(row)];
    }
    if (current.isValid())
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    if (!rows.empty())
        select(rows);
    if (const QModelIndex top = objects_.indexOf(place.top); top.isValid()) {
        scrollTo(top, QAbstractItemView::PositionAtTop);
        if (verticalScrollMode() == QAbstractItemView::ScrollPerPixel)
            verticalScrollBar()->setValue(verticalScrollBar()->value() - place.topOffset);
    }
}

void OutlineView::reloadKeepingPlace(const std::function<void()>& reload)
{
    const Place before = place();
    isReloading_ = true;
    setUpdatesEnabled(false);
    reload();
    // By pixels a view has to know the height of every row, above and below.
    setVerticalScrollMode(objects_.size() > mostRowsByPixel ? QAbstractItemView::ScrollPerItem
                                                            : QAbstractItemView::ScrollPerPixel);
    isAllExpanded_ = false;
    expandAllItems();
    isReloading_ = true;
    restore(before);
    setUpdatesEnabled(true);
    isReloading_ = false;
    // Without its row the menu would act on the selection, which is not what it was opened for.
    QWidget* menu = QApplication::activePopupWidget();
    if (clicked_ && !objects_.indexOf(clicked_.get()).isValid() && menu != nullptr)
        menu->close();
    actions_.wasReloaded();
}

void OutlineView::layOutRowsKeepingPlace()
{
    const QModelIndex top = indexAt({0, 0});
    const bool isAtTop = verticalScrollBar()->value() == 0;
    doItemsLayout();
    if (top.isValid() && !isAtTop)
        scrollTo(top, QAbstractItemView::PositionAtTop);
}

void OutlineView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    selectionIsKnown_ = false;
    if (!isReloading_ && actions_.selectionChanged)
        actions_.selectionChanged();
}

/// To find out what exactly has to be painted anew takes far longer than to paint it all.
QRegion OutlineView::visualRegionForSelection(const QItemSelection& /*selection*/) const
{
    return viewport()->rect();
}

void OutlineView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const
{
    QTreeView::drawRow(painter, option, index);
    if (!clicked_ || clicked_ != objects_.object(index))
        return;
    // The row that the menu is about, which need not be selected.
    painter->save();
    painter->setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    painter->restore();
}

void OutlineView::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const
{
    // The room left of the name: an arrow where there are contents, then what kind of thing it is.
    const QRect own(rect.right() + 1 - indentation(), rect.top(), indentation(), rect.height());
    if (objects_.hasChildren(index)) {
        QStyleOption arrow;
        arrow.initFrom(this);
        arrow.rect = QRect(own.left(), own.top(), arrowWidth, own.height());
        arrow.state |= QStyle::State_Children | QStyle::State_Item;
        if (isExpanded(index))
            arrow.state |= QStyle::State_Open;
        style()->drawPrimitive(QStyle::PE_IndicatorBranch, &arrow, painter, this);
    }
    const auto object = objects_.object(index);
    const QIcon icon = object ? kindIcon(*object) : QIcon();
    if (!icon.isNull()) {
        icon.paint(painter, QRect(own.left() + arrowWidth, own.top(), iconWidth, own.height()),
                   Qt::AlignCenter);
    }
}

}  // namespace nivor
