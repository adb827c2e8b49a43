#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "app/EmptyHint.h"
#include "app/IconSet.h"
#include "app/LocalizedText.h"
#include "app/ObjectDelegate.h"
#include "app/OutlineView.h"
#include "app/ThumbnailSlider.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QHeaderView>
#include <QLabel>
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
constexpr double sliderStep = 10.0;
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
