#include "app/EmptyHint.h"
#include "app/MainWindowFixture.h"

#include <QHeaderView>
#include <QToolButton>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

class MainWindowTest : public MainWindowFixture { };

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

TEST_F(MainWindowTest, AnIncompleteListIsCalledSo)
{
    addFiles({u"A", u"B", u"C"});
    plugIn({.faults = FaultPlan().on(OperationCode::GetObjectInfo, damagedAnswer(),
                                     Occurrences::nth(2))});
    listCamera();
    real.updateStatus();
    EXPECT_EQ(real.statusText(), english("2 items, the list is incomplete"));
    click("A");
    EXPECT_EQ(real.statusText(), english("2 items, the list is incomplete, 1 selected, 10 bytes"));
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
