#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "app/EmptyHint.h"
#include "app/IconSet.h"
#include "app/LocalizedText.h"
#include "app/ObjectDelegate.h"
#include "app/OutlineView.h"
#include "app/RowMetrics.h"
#include "app/ThumbnailSlider.h"
#include "datasets/ObjectInfoData.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace nivor {
namespace {

constexpr QSize firstSize{900, 600};
constexpr double mostOfScreen = 0.9;
constexpr int leastColumnWidth = 60;
constexpr int columnRoom = 24;
constexpr int firstModifiedWidth = 190;
constexpr int firstSizeWidth = 110;
constexpr int toolIconSize = 24;
constexpr int sliderWidth = 150;
constexpr int statusMargin = 3;
constexpr int sliderIconSize = 18;
constexpr double sliderStep = 10.0;
constexpr int messageMilliseconds = 10'000;
constexpr int readingMilliseconds = 250;

const QString geometryKey = QStringLiteral("WindowGeometryKey");
const QString columnsKey = QStringLiteral("ColumnsKey");

constexpr std::array<SortKey, 3> sortKeys{SortKey::FileName, SortKey::ModifiedDate,
                                          SortKey::ObjectCompressedSize};

QToolButton* toolButton(const char* title, const char* toolTip)
{
    auto* button = new QToolButton;
    button->setText(localizedText(title));
    button->setToolTip(localizedText(toolTip));
    button->setAccessibleName(localizedText(title));
    button->setAccessibleDescription(localizedText(toolTip));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIconSize({toolIconSize, toolIconSize});
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setEnabled(false);
    return button;
}

}  // namespace

MainWindow::MainWindow(MainQueue& mainQueue, QSettings& settings)
    : settings_(settings)
    , thumbnails_(mainQueue, [this] { outlineView_->viewport()->update(); })
    , actions_(*menuBar())
    , outlineView_(new OutlineView(objects_))
    , delegate_(new ObjectDelegate(objects_, thumbnails_, outlineView_))
    , hint_(new EmptyHint)
    , pages_(new QStackedWidget)
    , selectAllButton_(toolButton(TextKey::selectAllButtonTitle, TextKey::selectAllButtonToolTip))
    , copyButton_(toolButton(TextKey::copyButtonTitle, TextKey::copyButtonToolTip))
    , trashButton_(toolButton(TextKey::trashButtonTitle, TextKey::trashButtonToolTip))
    , smallPicture_(new QLabel)
    , largePicture_(new QLabel)
    , slider_(new ThumbnailSlider)
    , status_(new QLabel)
    , fileDrag_(
          {.droppedOnto =
               [this](const QUrl& folder) {
                   controller_->namesOfPromisedFilesDroppedAtDestination(
                       folder, std::exchange(dragged_, {}));
               },
           .droppedNowhereNamed =
               [this] { controller_->promisedFilesDroppedNowhere(std::exchange(dragged_, {})); }})
{
    setWindowTitle(QCoreApplication::applicationName());
    makeToolBar();
    makePages();
    statusBar()->addWidget(status_, 1);
    status_->setMargin(statusMargin);
    status_->setTextFormat(Qt::PlainText);
    setIcons();
    fitRowsToFont();
    restoreLayout();

    refresh_.setSingleShot(true);
    connect(&refresh_, &QTimer::timeout, this, [this] { refresh(); });
    readingTimer_.setInterval(readingMilliseconds);
    connect(&readingTimer_, &QTimer::timeout, this, [this] { updateStatus(); });
}

MainWindow::~MainWindow() = default;

void MainWindow::makeToolBar()
{
    auto* bar = new QToolBar;
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setIconSize({toolIconSize, toolIconSize});
    bar->addWidget(selectAllButton_);
    bar->addWidget(copyButton_);
    bar->addWidget(trashButton_);
    auto* stretch = new QWidget;
    stretch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(stretch);
    slider_->setFixedWidth(sliderWidth);
    slider_->setAccessibleName(localizedText(TextKey::thumbnailSliderName));
    slider_->setToolTip(localizedText(TextKey::thumbnailSliderName));
    bar->addWidget(smallPicture_);
    bar->addWidget(slider_);
    bar->addWidget(largePicture_);
    auto* margin = new QWidget;
    margin->setFixedWidth(toolIconSize / 3);
    bar->addWidget(margin);
    addToolBar(bar);
    setContextMenuPolicy(Qt::PreventContextMenu);
}

void MainWindow::makePages()
{
    outlineView_->setItemDelegate(delegate_);
    outlineView_->setFrameShape(QFrame::NoFrame);
    outlineView_->setAccessibleName(localizedText(TextKey::listName));
    pages_->addWidget(hint_);
    pages_->addWidget(outlineView_);
    setCentralWidget(pages_);
}

void MainWindow::restoreLayout()
{
    resize(firstSize.boundedTo(screen()->availableSize() * mostOfScreen));
    QHeaderView& header = *outlineView_->header();
    header.setSectionResizeMode(ObjectListModel::NameColumn, QHeaderView::Stretch);
    header.setMinimumSectionSize(leastColumnWidth);
    // Wide enough for a long date and a long size, whatever the font.
    const QDateTime longDate(QDate(2026, 9, 28), QTime(22, 58, 58));
    const auto widthOf = [this](const QString& text) {
        return fontMetrics().horizontalAdvance(text) + columnRoom;
    };
    header.resizeSection(
        ObjectListModel::ModifiedColumn,
        std::max(firstModifiedWidth, widthOf(QLocale().toString(longDate, QLocale::ShortFormat))));
    header.resizeSection(ObjectListModel::SizeColumn,
                         std::max(firstSizeWidth, widthOf(QStringLiteral("999.9 MB"))));
    restoreGeometry(settings_.value(geometryKey).toByteArray());
    header.restoreState(settings_.value(columnsKey).toByteArray());
    // The order is not kept: it begins by name.
    header.setSortIndicator(ObjectListModel::NameColumn, Qt::AscendingOrder);
    actions_.showOrder(ObjectListModel::NameColumn, Qt::AscendingOrder);
}

void MainWindow::saveLayout()
{
    settings_.setValue(geometryKey, saveGeometry());
    settings_.setValue(columnsKey, outlineView_->header()->saveState());
}

void MainWindow::setController(AppDelegate& controller)
{
    controller_ = &controller;
    outlineView_->setActions(
        {.wasClicked = [this] { controller_->outlineViewWasClicked(); },
         .selectionChanged =
             [this] {
                 isSelectionChanged_ = true;
                 refreshLater();
             },
         .wasReloaded = [this] { refreshLater(); },
         .dragWanted = [this] { dragSelection(); },
         .contextMenuWanted = [this](const QPoint& global) { openContextMenu(global); }});
    connectActions();
    refresh();
}

void MainWindow::connectActions()
{
    connect(selectAllButton_, &QToolButton::clicked, this,
            [this] { controller_->selectAllButtonWasClicked(); });
    connect(trashButton_, &QToolButton::clicked, this,
            [this] { controller_->trashButtonWasClicked(); });
    connect(copyButton_, &QToolButton::clicked, this,
            [this] { controller_->startCopyingSelectedItems(); });
    slider_->setAction([this] { controller_->thumbnailZoomSliderIsSlid(); });

    connect(actions_.copyToFolder, &QAction::triggered, this,
            [this] { controller_->startCopyingSelectedItems(); });
    connect(actions_.deleteFiles, &QAction::triggered, this,
            [this] { controller_->startDeletingSelectedItems(); });
    connect(actions_.quit, &QAction::triggered, this, [this] { controller_->terminate(); });
    connect(actions_.selectAll, &QAction::triggered, this, [this] {
        outlineView_->selectAll();
        controller_->outlineViewWasClicked();
    });
    connect(actions_.largerThumbnails, &QAction::triggered, this,
            [this] { stepThumbnails(sliderStep); });
    connect(actions_.smallerThumbnails, &QAction::triggered, this,
            [this] { stepThumbnails(-sliderStep); });
    connect(actions_.showLogFolder, &QAction::triggered, this, [this] {
        const QString folder = QString::fromStdString(logDirectory_.string());
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
        // Where no file manager answers, the user can at least read where it is.
        showMessage(folder);
    });
    connect(actions_.about, &QAction::triggered, this, [this] { showAbout(); });

    QHeaderView& header = *outlineView_->header();
    connect(&header, &QHeaderView::sortIndicatorChanged, this,
            [this](int column, Qt::SortOrder order) { changeOrder(column, order); });
    for (int column = 0; column < ObjectListModel::columnTotal; ++column) {
        connect(
            actions_.sortBy.at(static_cast<std::size_t>(column)), &QAction::triggered, this,
            [&header, column] { header.setSortIndicator(column, header.sortIndicatorOrder()); });
    }
    connect(actions_.sortAscending, &QAction::triggered, this, [&header] {
        header.setSortIndicator(header.sortIndicatorSection(), Qt::AscendingOrder);
    });
    connect(actions_.sortDescending, &QAction::triggered, this, [&header] {
        header.setSortIndicator(header.sortIndicatorSection(), Qt::DescendingOrder);
    });
}

void MainWindow::changeOrder(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ObjectListModel::columnTotal)
        return;
    actions_.showOrder(column, order);
    controller_->sortDescriptorsDidChange(
        {{sortKeys.at(static_cast<std::size_t>(column)), order == Qt::AscendingOrder}});
}

void MainWindow::stepThumbnails(double by)
{
    slider_->setDoubleValue(slider_->doubleValue() + by);
    controller_->thumbnailZoomSliderIsSlid();
}

// --- The list -----------------------------------------------------------------------------------

void MainWindow::reloadData()
{
    const std::shared_ptr<ObjectList> list = controller_->dataModels();
    if (!list)
        thumbnails_.clear();
    outlineView_->reloadKeepingPlace([&] { objects_.reload(list); });
    updateHint();
}

void MainWindow::expandAllItems()
{
    outlineView_->expandAllItems();
}

void MainWindow::setSelectAllButtonEnabled(bool isEnabled)
{
    selectAllButton_->setEnabled(isEnabled);
}

void MainWindow::setTrashButtonEnabled(bool isEnabled)
{
    trashButton_->setEnabled(isEnabled);
}

int MainWindow::numberOfRows() const
{
    return outlineView_->numberOfRows();
}

std::vector<int> MainWindow::selectedRowIndexes() const
{
    return outlineView_->selectedRowIndexes();
}

int MainWindow::numberOfSelectedRows() const
{
    return outlineView_->numberOfSelectedRows();
}

void MainWindow::selectAllRows()
{
    outlineView_->selectAll();
    isSelectionChanged_ = false;
}

void MainWindow::deselectAllRows()
{
    outlineView_->deselectAll();
}

int MainWindow::clickedRow() const
{
    return outlineView_->clickedRow();
}

std::shared_ptr<ObjectInfoData> MainWindow::itemAtRow(int row) const
{
    return outlineView_->itemAtRow(row);
}

double MainWindow::sliderValue() const
{
    return slider_->doubleValue();
}

void MainWindow::setSliderValue(double value)
{
    slider_->setDoubleValue(value);
}

void MainWindow::layOutRows()
{
    delegate_->setSlider(slider_->doubleValue(), ThumbnailSlider::largest);
    outlineView_->layOutRowsKeepingPlace();
}

void MainWindow::fitRowsToFont()
{
    delegate_->setPixelsPerPoint(std::max(1.0, fontMetrics().height() / smallestRowHeight));
    // They are of another size now.
    thumbnails_.clear();
}

void MainWindow::openContextMenu(const QPoint& global)
{
    if (controller_->isRunUnderWay())
        return;
    QMenu menu(this);
    menu.addActions({actions_.copyToFolder, actions_.deleteFiles});
    refresh();
    menu.exec(global);
}

// --- What the window tells ----------------------------------------------------------------------

void MainWindow::refreshLater()
{
    if (!refresh_.isActive())
        refresh_.start(0);
}

void MainWindow::refresh()
{
    using Action = AppDelegate::MenuAction;
    const bool isFree = !controller_->isRunUnderWay();
    const bool canCopy = isFree && controller_->validateMenuItem(Action::StartCopyingSelectedItems);
    const bool canDelete =
        isFree && controller_->validateMenuItem(Action::StartDeletingSelectedItems);
    actions_.copyToFolder->setEnabled(canCopy);
    copyButton_->setEnabled(canCopy);
    actions_.deleteFiles->setEnabled(canDelete);
    // A message box would keep a deletion waiting, which turns the event loop itself.
    actions_.about->setEnabled(isFree);
    refreshTrash(canDelete, isFree);
    wasFree_ = isFree;
    updateStatus();
}

/// The controller sets the button at a click, at select-all and when a list has been handed over;
/// the keyboard and the end of a run are left to do here.
void MainWindow::refreshTrash(bool canDelete, bool isFree)
{
    const bool isOver = isFree && !wasFree_;
    if (std::exchange(isSelectionChanged_, false) || isOver)
        trashButton_->setEnabled(canDelete);
    else if (!isFree || numberOfSelectedRows() == 0)
        trashButton_->setEnabled(false);
}

void MainWindow::updateStatus()
{
    const QString camera = controller_->cameraName();
    const QString program = QCoreApplication::applicationName();
    setWindowTitle(camera.isEmpty() ? program : camera + QStringLiteral(" — ") + program);
    const bool isReading = controller_->loader().isLoading();
    if (isReading && !readingTimer_.isActive())
        readingTimer_.start();
    else if (!isReading)
        readingTimer_.stop();
    updateHint();
    status_->setText(currentStatus());
    if (controller_->isRunUnderWay() == wasFree_)
        refreshLater();
}

QString MainWindow::currentStatus() const
{
    const BackgroundLoader& loader = controller_->loader();
    if (controller_->isDeleting())
        return localizedText(TextKey::statusDeleting);
    if (!controller_->NIVORConnected())
        return localizedText(TextKey::statusNoCamera);
    if (loader.isLoading()) {
        if (loader.objectsTotal() == 0)
            return localizedText(TextKey::statusReading);
        return localizedText(TextKey::statusReadingCount, QString::number(loader.objectsDone()),
                             QString::number(loader.objectsTotal()));
    }
    std::uint64_t bytes = 0;
    const std::vector<int> selected = selectedRowIndexes();
    for (const int row : selected)
        bytes += itemAtRow(row)->objectCompressedSize();
    const QString separator = localizedText(TextKey::statusSeparator);
    QString text = localizedCount(TextKey::statusItems, objects_.size());
    if (selected.empty())
        return text;
    text += separator + localizedCount(TextKey::statusSelected, static_cast<int>(selected.size()));
    return text + separator
        + QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

void MainWindow::updateHint()
{
    if (objects_.size() > 0) {
        pages_->setCurrentWidget(outlineView_);
        return;
    }
    if (!controller_->NIVORConnected()) {
        hint_->show(localizedText(TextKey::connectionRequestMessage),
                    localizedText(TextKey::connectionRequestInformative));
    } else if (controller_->loader().hasFailed()) {
        const QString title = localizedText(TextKey::hintUnreadableMessage);
        // The advice is looked for in the whole process list: once is enough.
        if (hint_->title() != title) {
            const QString advice = controller_->accessAdvice();
            hint_->show(title,
                        advice.isEmpty() ? localizedText(TextKey::hintUnreadableInformative)
                                         : advice);
        }
    } else if (controller_->dataModels() && !controller_->isUpdateView()) {
        hint_->show(localizedText(TextKey::hintEmptyMessage),
                    localizedText(TextKey::hintEmptyInformative));
    } else {
        hint_->show(localizedText(TextKey::hintReadingMessage), {});
    }
    pages_->setCurrentWidget(hint_);
}

bool MainWindow::isHintShown() const
{
    return pages_->currentWidget() == hint_;
}

QString MainWindow::statusText() const
{
    return status_->text();
}

void MainWindow::showMessage(const QString& text)
{
    statusBar()->showMessage(text, messageMilliseconds);
}

void MainWindow::setIcons()
{
    actions_.setPalette(palette());
    selectAllButton_->setIcon(actions_.selectAll->icon());
    copyButton_->setIcon(actions_.copyToFolder->icon());
    trashButton_->setIcon(actions_.deleteFiles->icon());
    const QSize size(sliderIconSize, sliderIconSize);
    smallPicture_->setPixmap(actions_.smallerThumbnails->icon().pixmap(size));
    largePicture_->setPixmap(actions_.largerThumbnails->icon().pixmap(size));
}

void MainWindow::addSimulationMenu(const std::function<void()>& unplug,
                                   const std::function<void()>& plugIn)
{
    auto* menu = new QMenu(localizedText(TextKey::menuSimulation), this);
    connect(menu->addAction(localizedText(TextKey::actionUnplug)), &QAction::triggered, this,
            unplug);
    connect(menu->addAction(localizedText(TextKey::actionPlugIn)), &QAction::triggered, this,
            plugIn);
    menuBar()->insertMenu(menuBar()->actions().last(), menu);
}

void MainWindow::showAbout()
{
    QMessageBox box(this);
    box.setWindowTitle(localizedText(TextKey::aboutTitle));
    box.setIconPixmap(plainIcon(QStringLiteral("nivor-file-transfer")).pixmap(64, 64));
    box.setTextFormat(Qt::PlainText);
    box.setText(QCoreApplication::applicationName() + u' ' + version_);
    box.setInformativeText(localizedText(TextKey::aboutMessage));
    box.addButton(localizedText(TextKey::okButtonMessage), QMessageBox::AcceptRole);
    box.exec();
}

// --- Dragging out -------------------------------------------------------------------------------

void MainWindow::dragSelection()
{
    ObjectList items;
    for (const int row : selectedRowIndexes())
        items.push_back(itemAtRow(row));
    const QStringList names = AppDelegate::writeItems(items);
    if (names.isEmpty() || controller_->isRunUnderWay() || fileDrag_.isBusy())
        return;
    if (!FileDrag::isPossible()) {
        showMessage(localizedText(TextKey::dragUnavailableMessage,
                                  localizedText(TextKey::actionCopyToFolder)));
        return;
    }
    dragged_ = std::move(items);
    const QPointer<MainWindow> self(this);
    const bool isTaken = fileDrag_.exec(outlineView_, names, dragPicture(dragged_));
    if (!self || isTaken)
        return;
    dragged_.clear();
    // Given up over the window itself, it was only a change of mind.
    if (!frameGeometry().contains(QCursor::pos())) {
        showMessage(
            localizedText(TextKey::dropRefusedMessage, localizedText(TextKey::actionCopyToFolder)));
    }
}

QPixmap MainWindow::dragPicture(const ObjectList& items) const
{
    constexpr QSize size{48, 48};
    for (const auto& item : items) {
        const QIcon kind = kindIcon(*item);
        if (!item->isAssociation())
            return (kind.isNull() ? plainIcon(QStringLiteral("kind-picture")) : kind).pixmap(size);
    }
    return plainIcon(QStringLiteral("kind-file")).pixmap(size);
}

// --- The end ------------------------------------------------------------------------------------

void MainWindow::closeWindow()
{
    close();
}

void MainWindow::endProgram()
{
    QCoreApplication::exit(0);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!controller_->windowShouldClose()) {
        event->ignore();
        return;
    }
    event->setAccepted(controller_->applicationShouldTerminateAfterLastWindowClosed());
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setIcons();
    if (event->type() == QEvent::FontChange) {
        fitRowsToFont();
        if (controller_ != nullptr)
            layOutRows();
    }
}

}  // namespace nivor
