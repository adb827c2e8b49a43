/// The program's window: the camera's contents, and what can be done with them.
#pragma once

#include "app/FileDrag.h"
#include "app/MainWindowOutlets.h"
#include "app/ObjectListModel.h"
#include "app/ThumbnailCache.h"
#include "app/WindowActions.h"

#include <QMainWindow>
#include <QTimer>

#include <filesystem>
#include <functional>

class QLabel;
class QSettings;
class QStackedWidget;
class QToolButton;

namespace nivor {

class AppDelegate;
class EmptyHint;
class MainQueue;
class ObjectDelegate;
class OutlineView;
class ThumbnailSlider;

/// Everything that the user does goes to the controller; what comes of it comes back through the
/// outlets. The size of the window and of its columns are kept in the settings.
class MainWindow : public QMainWindow, public MainWindowOutlets {
public:
    MainWindow(MainQueue& mainQueue, QSettings& settings);
    ~MainWindow() override;

    /// The controller; to be set before anything happens.
    void setController(AppDelegate& controller);

    void setLogDirectory(std::filesystem::path directory) { logDirectory_ = std::move(directory); }
    void setVersion(const QString& version) { version_ = version; }

    /// For a camera that isn't real: a menu that pulls its plug and puts it back.
    void addSimulationMenu(const std::function<void()>& unplug,
                           const std::function<void()>& plugIn);

    // The outlets, as the controller uses them.
    void reloadData() override;
    void expandAllItems() override;
    void setSelectAllButtonEnabled(bool isEnabled) override;
    void setTrashButtonEnabled(bool isEnabled) override;
    [[nodiscard]] int numberOfRows() const override;
    [[nodiscard]] std::vector<int> selectedRowIndexes() const override;
    [[nodiscard]] int numberOfSelectedRows() const override;
    void selectAllRows() override;
    void deselectAllRows() override;
    [[nodiscard]] int clickedRow() const override;
    [[nodiscard]] std::shared_ptr<ObjectInfoData> itemAtRow(int row) const override;
    [[nodiscard]] double sliderValue() const override;
    void setSliderValue(double value) override;
    void layOutRows() override;
    void updateStatus() override;
    void showMessage(const QString& text) override;
    void saveLayout() override;
    void closeWindow() override;
    void endProgram() override;
    [[nodiscard]] QWidget* widget() override { return this; }

    // Its parts.
    [[nodiscard]] OutlineView& outlineView() const { return *outlineView_; }
    [[nodiscard]] QToolButton& selectAllButton() const { return *selectAllButton_; }
    [[nodiscard]] QToolButton& copyButton() const { return *copyButton_; }
    [[nodiscard]] QToolButton& trashButton() const { return *trashButton_; }
    [[nodiscard]] ThumbnailSlider& thumbnailExpandSlider() const { return *slider_; }
    [[nodiscard]] WindowActions& actions() { return actions_; }
    [[nodiscard]] EmptyHint& hint() const { return *hint_; }
    [[nodiscard]] bool isHintShown() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] const ObjectListModel& objects() const { return objects_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeToolBar();
    void makePages();
    void connectActions();
    void restoreLayout();
    void setIcons();
    void fitRowsToFont();

    void changeOrder(int column, Qt::SortOrder order);
    void stepThumbnails(double by);
    void refreshLater();
    void refresh();
    void refreshTrash(bool canDelete, bool isFree);
    void updateHint();
    [[nodiscard]] QString currentStatus() const;
    void openContextMenu(const QPoint& global);
    void dragSelection();
    [[nodiscard]] QPixmap dragPicture(const ObjectList& items) const;
    void showAbout();

    QSettings& settings_;
    AppDelegate* controller_ = nullptr;
    std::filesystem::path logDirectory_;
    QString version_;

    ObjectListModel objects_;
    ThumbnailCache thumbnails_;
    WindowActions actions_;
    OutlineView* outlineView_;
    ObjectDelegate* delegate_;
    EmptyHint* hint_;
    QStackedWidget* pages_;
    QToolButton* selectAllButton_;
    QToolButton* copyButton_;
    QToolButton* trashButton_;
    QLabel* smallPicture_;
    QLabel* largePicture_;
    ThumbnailSlider* slider_;
    QLabel* status_;

    QTimer refresh_;                   ///< one refresh for many changes of the selection
    QTimer readingTimer_;              ///< runs while the camera is being read
    ObjectList dragged_;               ///< what the drag is about, until its drop has been answered
    bool isSelectionChanged_ = false;  ///< by the user, since the last refresh
    bool wasFree_ = true;              ///< no run was under way at the last refresh
    FileDrag fileDrag_;
};

}  // namespace nivor
