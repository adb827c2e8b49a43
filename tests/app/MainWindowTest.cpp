// The real window on simulated cameras, without a screen.

#include "app/MainWindow.h"
#include "app/AppFixture.h"
#include "app/EmptyHint.h"
#include "app/IconSet.h"
#include "app/OutlineView.h"
#include "app/ThumbnailSlider.h"

#include <QBuffer>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class MainWindowTest : public AppFixture {
protected:
    MainWindowTest()
    {
        real.setController(controller);
        controller.awakeFromNib();
        real.resize(900, 600);
        real.show();
    }

    ~MainWindowTest() override { QCoreApplication::processEvents(); }

    /// DCIM with A.JPG, B.MOV and README, and a file beside it.
    void listSmallCard()
    {
        const std::uint32_t dcim = card->addFolder(u"DCIM");
        card->addFile(u"B.MOV", 2000, dcim);
        card->addFile(u"A.JPG", 1000, dcim);
        card->addFile(u"README", 10, dcim);
        card->addFile(u"TOP.JPG", 10);
        plugIn();
        listCamera();
    }

    void listCamera()
    {
        mainQueue.advance(1s);
        controller.checkNIVORConnectionTimerFire();
        mainQueue.advance(1s);
        controller.operationQueue().waitUntilAllOperationsAreFinished();
        mainQueue.advance(2s);
        controller.checkNIVORConnectionTimerFire();
        QCoreApplication::processEvents();
    }

    std::vector<std::string> rows() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < real.numberOfRows(); ++row)
            names.push_back(namesOf({real.itemAtRow(row)}).front());
        return names;
    }

    QModelIndex index(const char* name, int column = 0) const
    {
        for (int row = 0; row < real.numberOfRows(); ++row) {
            if (namesOf({real.itemAtRow(row)}).front() == name)
                return real.objects().indexOf(real.itemAtRow(row).get()).siblingAtColumn(column);
        }
        return {};
    }

    QPoint centerOf(const char* name) const
    {
        return real.outlineView().visualRect(index(name)).center();
    }

    void click(const char* name, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(real.outlineView().viewport(), Qt::LeftButton, modifiers, centerOf(name));
        QCoreApplication::processEvents();
    }

    void openMenuOn(const char* name)
    {
        const QPoint at = centerOf(name);
        QWidget* viewport = real.outlineView().viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
        QCoreApplication::sendEvent(viewport, &event);
    }

    int heightOf(const char* name) const
    {
        return real.outlineView().visualRect(index(name)).height();
    }

    /// Moves the mouse with the left button held, as `QTest` does not.
    void dragMouse(const QPoint& from, const QPoint& way)
    {
        QWidget* viewport = real.outlineView().viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        for (const double part : {0.5, 1.0}) {
            const QPointF at = QPointF(from) + QPointF(way) * part;
            QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(viewport, &move);
        }
    }

    MainWindow real{mainQueue, settings};
    AppDelegate controller{{.engine = engine,
                            .logger = log.logger(),
                            .mainQueue = mainQueue,
                            .window = real,
                            .alerts = alerts,
                            .folderChooser = chooser,
                            .settings = settings,
                            .vendorID = anyVendorID,
                            .version = "1.2.0",
                            .logDirectory = log.logger().saveDirectory()}};
};

TEST_F(MainWindowTest, WithoutACameraTheWindowSaysWhatToDo)
{
    EXPECT_TRUE(real.isHintShown());
    EXPECT_EQ(real.hint().title(), english("No camera is connected."));
    EXPECT_FALSE(real.hint().text().isEmpty());
    EXPECT_EQ(real.statusText(), english("No camera"));
    EXPECT_FALSE(real.selectAllButton().isEnabled());
    EXPECT_FALSE(real.trashButton().isEnabled());
    EXPECT_FALSE(real.copyButton().isEnabled());
}

TEST_F(MainWindowTest, TheListAppearsExpandedAndSortedByName)
{
    listSmallCard();
    EXPECT_FALSE(real.isHintShown());
    EXPECT_THAT(rows(), ElementsAre("DCIM", "A.JPG", "B.MOV", "README", "TOP.JPG"));
    EXPECT_TRUE(real.selectAllButton().isEnabled());
    EXPECT_FALSE(real.trashButton().isEnabled());
    real.updateStatus();
    EXPECT_EQ(real.statusText(), english("5 items"));
    EXPECT_EQ(real.windowTitle(),
              english("Simulated Camera — ") + QCoreApplication::applicationName());
}

TEST_F(MainWindowTest, AnEmptyCameraIsCalledEmpty)
{
    plugIn();
    mainQueue.advance(1s);
    controller.checkNIVORConnectionTimerFire();
    real.updateStatus();
    EXPECT_EQ(real.hint().title(), english("Reading the camera…"));
    listCamera();
    real.updateStatus();
    EXPECT_EQ(real.hint().title(), english("There is nothing on the camera."));
}

TEST_F(MainWindowTest, ACameraThatCannotBeReadIsCalledSo)
{
    plugIn({.faults = FaultPlan().on(OperationCode::GetStorageIDs, answerWithArray({}))});
    listCamera();
    real.updateStatus();
    EXPECT_TRUE(real.isHintShown());
    EXPECT_EQ(real.hint().title(), english("The camera can’t be read."));
}

TEST_F(MainWindowTest, WhileItReadsTheStatusCounts)
{
    addFiles({u"A", u"B", u"C"});
    plugIn();
    mainQueue.advance(1s);
    controller.checkNIVORConnectionTimerFire();
    card->closeAfter(2);
    mainQueue.advance(1s);
    card->waitUntilReached();
    real.updateStatus();
    EXPECT_EQ(real.statusText(), english("Reading camera… 2 of 3"));
    card->open();
    controller.operationQueue().waitUntilAllOperationsAreFinished();
}

TEST_F(MainWindowTest, UnpluggingBringsTheHintBack)
{
    listSmallCard();
    host->detach(camera);
    mainQueue.advance(1s);
    controller.checkNIVORConnectionTimerFire();
    real.updateStatus();
    EXPECT_TRUE(real.isHintShown());
    EXPECT_EQ(real.numberOfRows(), 0);
    EXPECT_EQ(real.windowTitle(), QCoreApplication::applicationName());
    EXPECT_FALSE(real.selectAllButton().isEnabled());
}

// --- Selecting ----------------------------------------------------------------------------------

TEST_F(MainWindowTest, AClickOnAFileEnablesWhatWorksOnFiles)
{
    listSmallCard();
    click("A.JPG");
    EXPECT_TRUE(real.trashButton().isEnabled());
    EXPECT_TRUE(real.copyButton().isEnabled());
    EXPECT_TRUE(real.actions().deleteFiles->isEnabled());
    EXPECT_EQ(real.statusText(), english("5 items, 1 selected, 1.0 kB"));
    click("DCIM");
    EXPECT_FALSE(real.trashButton().isEnabled());
    EXPECT_FALSE(real.actions().copyToFolder->isEnabled());
    EXPECT_TRUE(real.actions().quit->isEnabled());
}

TEST_F(MainWindowTest, TheSelectAllButtonTogglesAndSetsTheTrash)
{
    listSmallCard();
    real.selectAllButton().click();
    EXPECT_EQ(real.numberOfSelectedRows(), 5);
    EXPECT_TRUE(real.trashButton().isEnabled());
    real.selectAllButton().click();
    EXPECT_EQ(real.numberOfSelectedRows(), 0);
    EXPECT_FALSE(real.trashButton().isEnabled());
}

TEST_F(MainWindowTest, RowsInAClosedFolderDoNotCount)
{
    listSmallCard();
    real.selectAllRows();
    real.outlineView().collapse(index("DCIM"));
    EXPECT_THAT(rows(), ElementsAre("DCIM", "TOP.JPG"));
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(0, 1));
    real.selectAllButton().click();
    EXPECT_EQ(real.numberOfSelectedRows(), 0);
}

TEST_F(MainWindowTest, TheSelectionOutlivesAReload)
{
    listSmallCard();
    click("B.MOV");
    controller.sortDescriptorsDidChange({{SortKey::FileName, false}});
    EXPECT_THAT(rows(), ElementsAre("TOP.JPG", "DCIM", "README", "B.MOV", "A.JPG"));
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(3));
}

TEST_F(MainWindowTest, ClosedFoldersStayClosedOverASort)
{
    listSmallCard();
    real.outlineView().collapse(index("DCIM"));
    controller.sortDescriptorsDidChange({{SortKey::ObjectCompressedSize, true}});
    EXPECT_EQ(real.numberOfRows(), 2);
}

// --- The order, the slider ----------------------------------------------------------------------

TEST_F(MainWindowTest, AClickOnAHeaderSortsAndAnotherTurnsTheOrder)
{
    listSmallCard();
    QHeaderView& header = *real.outlineView().header();
    const QPoint size(header.sectionViewportPosition(2) + 20, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, size);
    const bool wasAscending = header.sortIndicatorOrder() == Qt::AscendingOrder;
    EXPECT_EQ(header.sortIndicatorSection(), 2);
    EXPECT_EQ(controller.sortDescriptors().front().key, SortKey::ObjectCompressedSize);
    const auto first = rows();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, size);
    EXPECT_NE(header.sortIndicatorOrder() == Qt::AscendingOrder, wasAscending);
    EXPECT_NE(rows(), first);
}

TEST_F(MainWindowTest, TheMenuSortsAsTheHeaderDoes)
{
    listSmallCard();
    EXPECT_TRUE(real.actions().sortBy.at(0)->isChecked());
    real.actions().sortBy.at(2)->trigger();
    EXPECT_THAT(rows(), ElementsAre("DCIM", "README", "A.JPG", "B.MOV", "TOP.JPG"));
    real.actions().sortDescending->trigger();
    EXPECT_THAT(rows(), ElementsAre("TOP.JPG", "DCIM", "B.MOV", "A.JPG", "README"));
    EXPECT_EQ(real.outlineView().header()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(MainWindowTest, TheSliderMakesFilesHigherAndLeavesFolders)
{
    listSmallCard();
    const int least = heightOf("DCIM");
    EXPECT_EQ(heightOf("A.JPG"), least);
    real.thumbnailExpandSlider().setValue(real.thumbnailExpandSlider().maximum());
    EXPECT_EQ(heightOf("DCIM"), least);
    EXPECT_NEAR(heightOf("A.JPG"), least * 50.0 / 17.0, 1.0);
}

TEST_F(MainWindowTest, ThumbnailsFillATwoToOneFrameAndMissingOnesAreStoodInFor)
{
    QImage red(160, 80, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray file;
    QBuffer buffer(&file);
    red.save(&buffer, "PNG");
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    card->setThumbnail(card->addFile(u"A.JPG", 10, dcim), ByteBuffer(file.begin(), file.end()));
    card->addFile(u"B.JPG", 10, dcim);
    plugIn();
    listCamera();
    real.setSliderValue(50);
    real.layOutRows();
    const double pixels = heightOf("DCIM") / 17.0;
    const auto frame = [&](const char* name) {
        const QPoint origin = real.outlineView().visualRect(index(name)).topLeft();
        return QRect(origin, (QSizeF(67, 33.5) * pixels).toSize());
    };

    QImage shown;
    const auto isRedAt = [&shown](const QPoint& at) {
        const QColor colour = shown.pixelColor(at);
        return colour.red() > 200 && colour.green() < 60 && colour.blue() < 60;
    };
    const auto end = std::chrono::steady_clock::now() + 10s;
    do {
        shown = real.outlineView().viewport()->grab().toImage();
        mainQueue.advance(20ms);
    } while (!isRedAt(frame("A.JPG").center()) && std::chrono::steady_clock::now() < end);
    const QRect red67By33 = frame("A.JPG");
    EXPECT_TRUE(isRedAt(red67By33.topLeft() + QPoint(3, 3)));
    EXPECT_TRUE(isRedAt(red67By33.bottomRight() - QPoint(3, 3)));
    EXPECT_FALSE(isRedAt(QPoint(red67By33.right() + 3, red67By33.center().y())));

    // The same as that picture alone, on the same ground.
    const QRect empty = frame("B.JPG");
    QImage expected = shown.copy(empty);
    expected.fill(shown.pixelColor(empty.right() + 30 + 60, empty.center().y()));
    QPainter painter(&expected);
    plainIcon(english("no-thumbnail"))
        .paint(&painter,
               QRectF(QPointF(), QSizeF(67, 33.5) * pixels).adjusted(1, 1, -1, -1).toAlignedRect());
    painter.end();
    EXPECT_EQ(shown.pixelColor(empty.center()),
              expected.pixelColor(empty.center() - empty.topLeft()));
    EXPECT_NE(shown.pixelColor(empty.center()), expected.pixelColor(0, 0));
}

TEST_F(MainWindowTest, KeysAndMenuChangeTheSizeOfThumbnails)
{
    listSmallCard();
    real.actions().largerThumbnails->trigger();
    EXPECT_DOUBLE_EQ(real.sliderValue(), 10.0);
    real.actions().smallerThumbnails->trigger();
    real.actions().smallerThumbnails->trigger();
    EXPECT_DOUBLE_EQ(real.sliderValue(), 0.0);
}

// --- Menus and dragging -------------------------------------------------------------------------

TEST_F(MainWindowTest, ARightClickNamesItsRowAndLeavesTheSelection)
{
    listSmallCard();
    click("A.JPG");
    int clicked = -1;
    QTimer::singleShot(0, &real, [&] {
        clicked = real.clickedRow();
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        EXPECT_THAT(menu->actions(),
                    ElementsAre(real.actions().copyToFolder, real.actions().deleteFiles));
        menu->close();
    });
    const QPoint at = centerOf("B.MOV");
    QWidget* viewport = real.outlineView().viewport();
    QTest::mouseClick(viewport, Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QCoreApplication::sendEvent(viewport, &event);
    EXPECT_EQ(clicked, 2);
    EXPECT_EQ(real.clickedRow(), -1);
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(1));
}

TEST_F(MainWindowTest, AReloadUnderTheContextMenuLeavesItsRow)
{
    listSmallCard();
    click("A.JPG");
    int clicked = -1;
    QTimer::singleShot(0, &real, [&] {
        controller.sortDescriptorsDidChange({{SortKey::FileName, false}});
        clicked = real.clickedRow();
        QApplication::activePopupWidget()->close();
    });
    openMenuOn("TOP.JPG");
    EXPECT_EQ(clicked, 0);
}

TEST_F(MainWindowTest, TheContextMenuGoesWithItsRow)
{
    listSmallCard();
    click("A.JPG");
    bool isOpen = true;
    QTimer::singleShot(0, &real, [&] {
        host->detach(camera);
        mainQueue.advance(1s);
        controller.checkNIVORConnectionTimerFire();
        isOpen = QApplication::activePopupWidget() != nullptr;
    });
    openMenuOn("TOP.JPG");
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(chooser.questions, 0);
}

TEST_F(MainWindowTest, TheTrashButtonFollowsTheKeyboard)
{
    listSmallCard();
    click("DCIM");
    EXPECT_FALSE(real.trashButton().isEnabled());
    QTest::keyClick(&real.outlineView(), Qt::Key_Down, Qt::ShiftModifier);
    QCoreApplication::processEvents();
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(0, 1));
    EXPECT_TRUE(real.trashButton().isEnabled());
}

TEST_F(MainWindowTest, AfterADeletionTheTrashButtonHasNothingToDelete)
{
    listSmallCard();
    click("A.JPG");
    real.trashButton().click();
    mainQueue.advance({});
    QCoreApplication::processEvents();
    EXPECT_EQ(real.numberOfSelectedRows(), 0);
    EXPECT_FALSE(real.trashButton().isEnabled());
}

TEST_F(MainWindowTest, OnlyAMotionToTheSideDrags)
{
    listSmallCard();
    int drags = 0;
    real.outlineView().setActions({.wasClicked = [] {},
                                   .selectionChanged = [] {},
                                   .wasReloaded = [] {},
                                   .dragWanted = [&drags] { ++drags; },
                                   .contextMenuWanted = [](const QPoint&) {}});
    dragMouse(centerOf("A.JPG"), {60, 3});
    EXPECT_EQ(drags, 1);
    QTest::mouseRelease(real.outlineView().viewport(), Qt::LeftButton);

    const QPoint down = centerOf("README") - centerOf("A.JPG");
    dragMouse(centerOf("A.JPG"), down);
    QTest::mouseRelease(real.outlineView().viewport(), Qt::LeftButton, {}, centerOf("README"));
    EXPECT_EQ(drags, 1);
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(1, 2, 3));
}

TEST_F(MainWindowTest, WhereNothingCanBeDraggedOutTheWindowSaysSo)
{
    listSmallCard();
    dragMouse(centerOf("A.JPG"), {60, 3});
    EXPECT_TRUE(
        real.findChild<QStatusBar*>()->currentMessage().contains(english("can’t be dragged out")));
}

TEST_F(MainWindowTest, DraggingWhatHasNoExtensionSaysNothing)
{
    listSmallCard();
    dragMouse(centerOf("README"), {60, 3});
    EXPECT_TRUE(real.findChild<QStatusBar*>()->currentMessage().isEmpty());
}

TEST_F(MainWindowTest, EveryControlHasANameAndCanBeReachedWithTheKeyboard)
{
    for (QWidget* control : std::initializer_list<QWidget*>{
             &real.selectAllButton(), &real.copyButton(), &real.trashButton(),
             &real.thumbnailExpandSlider(), &real.outlineView()}) {
        EXPECT_FALSE(control->accessibleName().isEmpty());
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus)
            << control->accessibleName().toStdString();
    }
    EXPECT_EQ(real.actions().deleteFiles->shortcut(), QKeySequence(Qt::Key_Delete));
    for (const QAction* action : real.actions().copyToFolder->parent()->findChildren<QAction*>())
        EXPECT_NE(action->shortcut(), QKeySequence(QKeySequence::Copy));
}

TEST_F(MainWindowTest, TheDeleteKeyAsksAndDeletes)
{
    listSmallCard();
    click("A.JPG");
    real.actions().deleteFiles->trigger();
    EXPECT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(rows(), ElementsAre("DCIM", "B.MOV", "README", "TOP.JPG"));
}

// --- The end ------------------------------------------------------------------------------------

TEST_F(MainWindowTest, ClosingKeepsTheSliderAndTheLayout)
{
    real.setSliderValue(37.6);
    real.outlineView().header()->resizeSection(2, 123);
    EXPECT_TRUE(real.close());
    EXPECT_TRUE(controller.isClosed());
    EXPECT_DOUBLE_EQ(
        settings.value(QLatin1String(AppDelegate::thumbnailExpandSliderKey)).toDouble(), 37.6);
    const MainWindow next(mainQueue, settings);
    EXPECT_EQ(next.outlineView().header()->sectionSize(2), 123);
    EXPECT_EQ(next.size(), real.size());
}

TEST_F(MainWindowTest, ClosingDuringACopyWaitsForItsStop)
{
    addFiles({u"FILM.MOV"}, 4'000'000);
    plugIn({.pace = {.megabytesPerSecond = 4}});
    listCamera();
    bool hasClosed = true;
    // The fixture's own controller is idle; this one runs.
    const std::function<void()> closeOnceItRuns = [&] {
        if (hasArrived("FILM.MOV", 1)())
            hasClosed = real.close();
        else
            QTimer::singleShot(1, &real, closeOnceItRuns);
    };
    QTimer::singleShot(1, &real, closeOnceItRuns);
    controller.startCopyingItems(*controller.dataModels(), urlOf(folder()));
    EXPECT_FALSE(hasClosed);
    EXPECT_TRUE(real.isVisible());
    EXPECT_EQ(camera->record().cancelRequests, 1U);
    mainQueue.advance({});
    EXPECT_FALSE(real.isVisible());
}

}  // namespace
