// What happens while a run or a question turns the event loop.

#include "app/AppFixture.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class AppReentrancy : public AppFixture {
protected:
    /// Two films, each on its way for half a second.
    void listTwoFilms()
    {
        addFiles({u"1.MOV", u"2.MOV"}, filmSize);
        list({.pace = {.megabytesPerSecond = 4}});
    }

    /// Files whose deletion takes a while.
    void listSlowDeletions()
    {
        addFiles({u"A", u"B"});
        list({.faults = FaultPlan().on(OperationCode::DeleteObject, fault::Delay{200ms})});
        selectAll();
    }

    void swapCameras(const char16_t* name)
    {
        host->detach(camera);
        card = std::make_shared<GatedCard>();
        addFiles({name});
        plugIn({.identity = {.serialNumber = "another"}});
    }

    std::vector<std::string> copyRecords() const { return log.messagesOf(copyRecord); }

    static constexpr std::uint64_t filmSize = 2'000'000;
};

// --- While a copy runs --------------------------------------------------------------------------

TEST_F(AppReentrancy, ASecondCopyDoesNotBegin)
{
    listTwoFilms();
    selectAll();
    once(hasArrived("1.MOV", 1), [this] {
        EXPECT_TRUE(app.isRunUnderWay());
        EXPECT_FALSE(app.receivedComplete());
        app.startCopyingSelectedItems();
        copyAll();
    });
    copyAll();
    EXPECT_EQ(chooser.questions, 0);
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV", "2.MOV"));
    EXPECT_EQ(copyRecords().size(), 2U);
}

TEST_F(AppReentrancy, ADeletionDoesNotBeginDuringACopy)
{
    listTwoFilms();
    selectAll();
    once(hasArrived("1.MOV", 1), [this] {
        app.startDeletingSelectedItems();
        app.startDeletingItems(window.shown);
    });
    copyAll();
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_EQ(requests(OperationCode::DeleteObject), 0U);
    EXPECT_THAT(log.messagesOf(deleteRecord), IsEmpty());
}

TEST_F(AppReentrancy, ATickDuringACopyLeavesItAlone)
{
    listTwoFilms();
    once(hasArrived("1.MOV", 1), [this] { tick(); });
    copyAll();
    EXPECT_TRUE(app.NIVORConnected());
    EXPECT_TRUE(holdsObject(folder() / "2.MOV", handles.at(1), filmSize));
    EXPECT_THAT(window.take(), IsEmpty());
}

TEST_F(AppReentrancy, ATickThatFindsTheCameraGoneEmptiesTheListUnderTheCopy)
{
    listTwoFilms();
    once(hasArrived("1.MOV", 1), [this] {
        host->detach(camera);
        // The link is dropped as soon as the transfer has failed.
        app.checkNIVORConnectionTimerFire();
        app.checkNIVORConnectionTimerFire();
    });
    copyAll();
    tick();
    EXPECT_FALSE(app.NIVORConnected());
    EXPECT_EQ(app.dataModels(), nullptr);
    EXPECT_EQ(copyRecords().back(), "startCopyingItem (result = fail)");
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_TRUE(alerts.shown.front().detailedText.endsWith(english("2.MOV: the camera is gone")));
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV"));
}

TEST_F(AppReentrancy, ACameraPutInTheOldOnesPlaceIsTakenUpAfterTheCopy)
{
    listTwoFilms();
    const auto itemsOfTheOldOne = window.shown;
    once(hasArrived("1.MOV", 1), [this] {
        swapCameras(u"1.MOV");
        tick();
        tick();
        tick();
    });
    app.startCopyingItems(itemsOfTheOldOne, urlOf(folder()));
    // Nothing of the new camera came under an old name.
    EXPECT_EQ(requests(OperationCode::GetObject), 0U);
    EXPECT_EQ(copyRecords().back(), "startCopyingItem (result = fail)");
    tick();
    tick();
    EXPECT_TRUE(app.NIVORConnected());
}

TEST_F(AppReentrancy, AWindowAskedToCloseStopsTheCopyAndClosesAfterIt)
{
    listTwoFilms();
    bool mayClose = true;
    once(hasArrived("1.MOV", 1), [&] { mayClose = app.windowShouldClose(); });
    copyAll();
    EXPECT_FALSE(mayClose);
    EXPECT_EQ(camera->record().cancelRequests, 1U);
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV"));
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_EQ(window.closings, 0);
    mainQueue.advance({});
    EXPECT_EQ(window.closings, 1);
    EXPECT_TRUE(app.windowShouldClose());
}

TEST_F(AppReentrancy, AListingWaitsForTheCopy)
{
    for (int i = 0; i < 300; ++i)
        card->addFile(u"IMG.JPG", 10);
    addFiles({u"FILM.MOV"}, filmSize);
    plugIn();
    tick();
    card->closeAfter(100);
    mainQueue.advance(1s);
    card->waitUntilReached();
    tick();
    ASSERT_FALSE(window.shown.empty());
    std::uint64_t before = 0;
    std::uint64_t after = 0;
    card->open();
    camera->setPace({.megabytesPerSecond = 0.002});
    onceTheLoopTurns([&] { before = requests(OperationCode::GetObjectInfo); });
    const ObjectList items(1, window.shown.front());
    app.startCopyingItems(items, urlOf(folder()));
    after = requests(OperationCode::GetObjectInfo);
    // The object that was being read when the copy began is the last one until its end.
    EXPECT_LE(after, before + 1);
    EXPECT_LT(after, 301U);
    camera->setPace({});
    app.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_EQ(requests(OperationCode::GetObjectInfo), 301U);
    EXPECT_THAT(filesInFolder(), ElementsAre("IMG.JPG"));
}

// --- While files are deleted --------------------------------------------------------------------

TEST_F(AppReentrancy, ASecondRunDoesNotBeginDuringADeletion)
{
    listSlowDeletions();
    onceTheLoopTurns([this] {
        EXPECT_TRUE(app.isRunUnderWay());
        app.startDeletingSelectedItems();
        app.startCopyingSelectedItems();
    });
    app.startDeletingSelectedItems();
    EXPECT_EQ(requests(OperationCode::DeleteObject), 2U);
    EXPECT_EQ(chooser.questions, 0);
    EXPECT_EQ(log.messagesOf(deleteRecord).size(), 2U);
}

TEST_F(AppReentrancy, ADeletionRunsToItsEndBeforeTheWindowCloses)
{
    listSlowDeletions();
    bool mayClose = true;
    onceTheLoopTurns([&] { mayClose = app.windowShouldClose(); });
    app.startDeletingSelectedItems();
    EXPECT_FALSE(mayClose);
    EXPECT_EQ(requests(OperationCode::DeleteObject), 2U);
    mainQueue.advance({});
    EXPECT_EQ(window.closings, 1);
}

TEST_F(AppReentrancy, ATickDuringADeletionLeavesItAlone)
{
    listSlowDeletions();
    onceTheLoopTurns([this] { tick(); });
    app.startDeletingSelectedItems();
    EXPECT_THAT(*app.dataModels(), IsEmpty());
    EXPECT_TRUE(app.NIVORConnected());
}

TEST_F(AppReentrancy, ATickThatFindsTheCameraGoneEmptiesTheListUnderTheDeletion)
{
    listSlowDeletions();
    onceTheLoopTurns([this] {
        host->detach(camera);
        app.checkNIVORConnectionTimerFire();
        app.checkNIVORConnectionTimerFire();
    });
    app.startDeletingSelectedItems();
    tick();
    EXPECT_EQ(app.dataModels(), nullptr);
    EXPECT_FALSE(app.NIVORConnected());
    EXPECT_EQ(log.messagesOf(deleteRecord).back(), "startDeletingItem (result = fail)");
}

// --- While a question is on the screen ----------------------------------------------------------

TEST_F(AppReentrancy, ASwapWhileAFolderIsChosenCopiesNothingOfTheNewCamera)
{
    addFiles({u"OLD.JPG"});
    list();
    selectRows({0});
    chooser.meanwhile = [this] {
        swapCameras(u"NEW.JPG");
        tick();
        listWhatIsThere();
        ASSERT_THAT(namesOf(window.shown), ElementsAre("NEW.JPG"));
    };
    app.startCopyingSelectedItems();
    EXPECT_THAT(filesInFolder(), IsEmpty());
    EXPECT_EQ(requests(OperationCode::GetObject), 0U);
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown.front().detailedText, english("OLD.JPG: the camera no longer has it"));
}

TEST_F(AppReentrancy, ASwapWhileADeletionIsConfirmedDeletesNothingOfTheNewCamera)
{
    addFiles({u"OLD.JPG"});
    list();
    selectRows({0});
    alerts.meanwhile = [this] {
        swapCameras(u"NEW.JPG");
        tick();
        listWhatIsThere();
    };
    app.startDeletingSelectedItems();
    EXPECT_EQ(requests(OperationCode::DeleteObject), 0U);
    EXPECT_THAT(namesOf(*app.dataModels()), ElementsAre("NEW.JPG"));
}

TEST_F(AppReentrancy, UnpluggingWhileAFolderIsChosenFailsClearly)
{
    addFiles({u"A.JPG"});
    list();
    selectRows({0});
    chooser.meanwhile = [this] {
        host->detach(camera);
        tick();
    };
    app.startCopyingSelectedItems();
    EXPECT_THAT(filesInFolder(), IsEmpty());
    EXPECT_EQ(alerts.shown.size(), 1U);
}

}  // namespace
