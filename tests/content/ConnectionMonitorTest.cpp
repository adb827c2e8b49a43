#include "content/ConnectionMonitor.h"

#include "content/BackgroundFixture.h"
#include "content/ContentView.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Writes down what becomes of the window.
class RecordingView : public ContentView {
public:
    void reloadData() override { calls.emplace_back("reload"); }
    void expandAllItems() override { calls.emplace_back("expand"); }
    void setSelectAllButtonEnabled(bool on) override
    {
        calls.emplace_back(on ? "select all on" : "select all off");
    }
    void setTrashButtonEnabled(bool on) override
    {
        calls.emplace_back(on ? "trash on" : "trash off");
    }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    std::vector<std::string> calls;
};

class ConnectionMonitorTest : public BackgroundFixture {
protected:
    /// One second passes, then the monitor ticks.
    void tick()
    {
        mainQueue.advance(1s);
        monitor.checkNIVORConnectionTimerFire();
    }

    void finishLoad()
    {
        mainQueue.advance(1s);
        loader.operationQueue().waitUntilAllOperationsAreFinished();
    }

    static std::shared_ptr<MemoryCard> cardWith(const char16_t* name)
    {
        auto made = std::make_shared<MemoryCard>();
        made->addFile(name, 10);
        return made;
    }

    static CameraSettings numbered(const char* serialNumber, FaultPlan faults = {})
    {
        return {.identity = {.serialNumber = serialNumber}, .faults = std::move(faults)};
    }

    std::size_t disconnectRecords() const
    {
        return log.messagesOf("PTPCommunication disconnect").size();
    }

    /// How often the link has been dropped since the engine was made.
    std::size_t disconnects() const { return disconnectRecords() - disconnectsAtStart; }

    const std::size_t disconnectsAtStart = disconnectRecords();

    RecordingView view;
    int loads = 0;
    ConnectionMonitor monitor{{engine, model, view, priority, anyVendorID, [this] {
                                   ++loads;
                                   loader.setupDataModels();
                               }}};
};

// --- What the look at the USB changes: every row for both states --------------------------------

TEST_F(ConnectionMonitorTest, AnotherCameraWhileNotConnectedConnects)
{
    plugIn(card);
    ASSERT_EQ(engine.existsDevice(anyVendorID), 2);
    host->attach(std::make_shared<SimulatedCamera>(cardWith(u"A"), numbered("other")));
    engine.setConnectedDeviceProductId(0);
    monitor.updateNIVORConnectionStatus();
    EXPECT_TRUE(monitor.NIVORConnected());
    EXPECT_EQ(disconnects(), 0U);
}

TEST_F(ConnectionMonitorTest, TheKnownCameraWhileNotConnectedConnects)
{
    plugIn(card);
    ASSERT_EQ(engine.existsDevice(anyVendorID), 2);
    ASSERT_EQ(engine.existsDevice(anyVendorID), 1);
    monitor.updateNIVORConnectionStatus();
    EXPECT_TRUE(monitor.NIVORConnected());
}

TEST_F(ConnectionMonitorTest, NoCameraWhileNotConnectedChangesNothing)
{
    monitor.updateNIVORConnectionStatus();
    EXPECT_FALSE(monitor.NIVORConnected());
    EXPECT_EQ(disconnects(), 0U);
}

TEST_F(ConnectionMonitorTest, AnotherCameraWhileConnectedDropsTheLink)
{
    plugIn(card);
    monitor.setNIVORConnected(true);
    monitor.updateNIVORConnectionStatus();
    EXPECT_FALSE(monitor.NIVORConnected());
    EXPECT_EQ(disconnects(), 1U);
}

TEST_F(ConnectionMonitorTest, TheKnownCameraWhileConnectedChangesNothing)
{
    plugIn(card);
    monitor.updateNIVORConnectionStatus();
    monitor.updateNIVORConnectionStatus();
    EXPECT_TRUE(monitor.NIVORConnected());
    EXPECT_EQ(disconnects(), 0U);
}

TEST_F(ConnectionMonitorTest, NoCameraWhileConnectedDropsTheLink)
{
    monitor.setNIVORConnected(true);
    monitor.updateNIVORConnectionStatus();
    EXPECT_FALSE(monitor.NIVORConnected());
    EXPECT_EQ(disconnects(), 1U);
}

TEST_F(ConnectionMonitorTest, ABusyLinkCountsAsConnected)
{
    monitor.setNIVORConnected(true);
    std::thread([this] {
        const std::lock_guard guard(engine.lock());
        std::thread([this] { monitor.updateNIVORConnectionStatus(); }).join();
    }).join();
    EXPECT_TRUE(monitor.NIVORConnected());
    EXPECT_EQ(host->listings(), 0U);
}

// --- The tick -----------------------------------------------------------------------------------

TEST_F(ConnectionMonitorTest, AnAttachedCameraIsLoadedAndShown)
{
    card->addFile(u"A", 10);
    card->addFile(u"B", 10);
    plugIn(card);
    tick();
    EXPECT_EQ(loads, 1);
    EXPECT_THAT(view.take(), IsEmpty());

    finishLoad();
    tick();
    EXPECT_THAT(view.take(), ElementsAre("reload", "expand", "select all on", "trash off"));
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_FALSE(model.isUpdateView());

    tick();
    EXPECT_THAT(view.take(), ElementsAre("reload", "expand", "select all on", "trash off"));
    EXPECT_THAT(shown(), ElementsAre("A", "B"));

    tick();
    EXPECT_THAT(view.take(), IsEmpty());
    EXPECT_EQ(loads, 1);
}

TEST_F(ConnectionMonitorTest, WithoutACameraATickDoesNothing)
{
    tick();
    EXPECT_THAT(view.take(), IsEmpty());
    EXPECT_EQ(loads, 0);
}

TEST_F(ConnectionMonitorTest, ACameraWithoutStorageKeepsTheMonitorRunning)
{
    const auto camera =
        plugIn(card, {.faults = FaultPlan().on(OperationCode::GetStorageIDs, answerWithArray({}))});
    tick();
    finishLoad();
    tick();
    tick();
    EXPECT_THAT(view.take(), IsEmpty());
    EXPECT_EQ(loads, 1);
    host->detach(camera);
    tick();
    EXPECT_THAT(view.take(), ElementsAre("reload", "select all off", "trash off"));
}

TEST_F(ConnectionMonitorTest, UnpluggingEmptiesTheListAndDisablesBothButtons)
{
    card->addFile(u"A", 10);
    const auto camera = plugIn(card);
    tick();
    finishLoad();
    tick();
    tick();
    view.take();
    host->detach(camera);
    tick();
    EXPECT_THAT(view.take(), ElementsAre("reload", "select all off", "trash off"));
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_EQ(disconnects(), 1U);
}

TEST_F(ConnectionMonitorTest, ALatePublicationOfALostCameraIsThrownAway)
{
    card->addFile(u"A", 10);
    card->addFile(u"B", 10);
    const auto camera = plugIn(card);
    tick();
    card->closeAfter(1);
    mainQueue.advance(1s);
    card->waitUntilReached();
    tick();
    EXPECT_THAT(shown(), ElementsAre("A"));
    host->detach(camera);
    card->open();
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    tick();
    view.take();
    EXPECT_EQ(model.dataModels(), nullptr);

    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("A"));  // published all the same
    monitor.checkNIVORConnectionTimerFire();
    EXPECT_THAT(view.take(), ElementsAre("reload"));
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST_F(ConnectionMonitorTest, ACameraThatVanishesInTheListingIsNoticed)
{
    for (const char16_t* name : {u"A", u"B", u"C", u"D"})
        card->addFile(name, 10);
    plugIn(card,
           {.faults = FaultPlan().on(OperationCode::GetObjectInfo, fault::Vanish{},
                                     Occurrences::nth(3))});
    tick();
    finishLoad();
    tick();
    EXPECT_THAT(view.take(), ElementsAre("reload", "select all off", "trash off"));
    tick();
    tick();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_FALSE(monitor.NIVORConnected());
}

TEST_F(ConnectionMonitorTest, ASwapDropsTheOldCameraInOneTickAndLoadsTheNewOneInTheNext)
{
    const auto first = plugIn(cardWith(u"OLD"), numbered("first"));
    tick();
    finishLoad();
    tick();
    tick();
    EXPECT_THAT(shown(), ElementsAre("OLD"));
    view.take();

    host->detach(first);
    plugIn(cardWith(u"NEW"), numbered("second"));
    tick();
    EXPECT_FALSE(monitor.NIVORConnected());
    EXPECT_THAT(view.take(), ElementsAre("reload", "select all off", "trash off"));
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(loads, 1);

    tick();
    EXPECT_TRUE(monitor.NIVORConnected());
    EXPECT_EQ(loads, 2);
    finishLoad();
    tick();
    EXPECT_THAT(shown(), ElementsAre("NEW"));
}

TEST_F(ConnectionMonitorTest, ASwapBeforeTheOldListIsPublishedShowsNothingOfIt)
{
    const auto first = plugIn(cardWith(u"OLD"), numbered("first"));
    tick();
    finishLoad();  // its list is due in two seconds
    host->detach(first);
    plugIn(cardWith(u"NEW"), numbered("second"));
    for (int i = 0; i < 4; ++i) {
        tick();
        EXPECT_THAT(shown(), ::testing::Not(ElementsAre("OLD"))) << i;
    }
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    tick();
    EXPECT_THAT(shown(), ElementsAre("NEW"));
}

TEST_F(ConnectionMonitorTest, PluggingInAgainLoadsAgain)
{
    card->addFile(u"A", 10);
    const auto camera = plugIn(card);
    tick();
    finishLoad();
    host->detach(camera);
    tick();
    host->attach(camera);
    tick();
    finishLoad();
    tick();
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_EQ(loads, 2);
}

TEST_F(ConnectionMonitorTest, DuringARunACameraMayGoButNoneIsTakenUp)
{
    const auto camera = plugIn(cardWith(u"A"), numbered("first"));
    tick();
    finishLoad();
    view.take();
    {
        const CameraPriority::Claim run(priority);
        host->detach(camera);
        plugIn(cardWith(u"B"), numbered("second"));
        tick();
        EXPECT_FALSE(monitor.NIVORConnected());
        EXPECT_THAT(view.take(), ElementsAre("reload", "select all off", "trash off"));
        tick();
        tick();
        EXPECT_FALSE(monitor.NIVORConnected());
        EXPECT_EQ(loads, 1);
    }
    tick();
    EXPECT_TRUE(monitor.NIVORConnected());
    EXPECT_EQ(loads, 2);
}

}  // namespace
