#include "app/AppFixture.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class AppLifecycle : public AppFixture {
protected:
    QVariant savedSlider() const
    {
        return settings.value(QLatin1String(AppDelegate::thumbnailExpandSliderKey));
    }

    /// What the log says, whichever of its files has it.
    std::string logText()
    {
        std::string text;
        for (const auto& file : std::filesystem::directory_iterator(log.logger().saveDirectory())) {
            const ByteBuffer bytes = bytesOf(file.path());
            text.append(bytes.begin(), bytes.end());
        }
        return text;
    }

    bool hasRecord(const std::string& selector, const std::string& message)
    {
        return logText().find("<event>AppDelegate " + selector + "</event>\n    <message>" + message
                              + "</message>")
            != std::string::npos;
    }
};

TEST_F(AppLifecycle, TheListIsSortedByNameUnlessItHasAnOrder)
{
    app.awakeFromNib();
    EXPECT_THAT(app.sortDescriptors(), ElementsAre(SortDescriptor{SortKey::FileName, true}));
    app.setSortDescriptors({{SortKey::ObjectCompressedSize, false}});
    app.awakeFromNib();
    EXPECT_THAT(app.sortDescriptors(),
                ElementsAre(SortDescriptor{SortKey::ObjectCompressedSize, false}));
}

TEST_F(AppLifecycle, TheFirstRecordNamesTheVersion)
{
    plugIn();
    app.applicationDidFinishLaunching();
    EXPECT_TRUE(hasRecord("applicationDidFinishLaunching:", "Application start (ver1.2.0)"));
    EXPECT_EQ(log.logger().logBaseName(), "NIVOR File Transfer");
}

TEST_F(AppLifecycle, TheLogFolderIsMadeForTheFirstRecord)
{
    std::filesystem::remove_all(log.logger().saveDirectory());
    app.applicationDidFinishLaunching();
    EXPECT_TRUE(hasRecord("applicationDidFinishLaunching:", "Application start (ver1.2.0)"));
}

TEST_F(AppLifecycle, AFirstLaunchBeginsWithTheSmallestThumbnails)
{
    window.slider = 12;
    app.applicationDidFinishLaunching();
    EXPECT_DOUBLE_EQ(window.slider, 0.0);
}

TEST_F(AppLifecycle, TheSliderIsKeptAsADoubleWhenTheWindowCloses)
{
    window.slider = 37.6;
    EXPECT_TRUE(app.applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_THAT(window.take(), Contains("save layout"));
    EXPECT_TRUE(std::filesystem::exists(settingsFolder.path() / "settings.ini"));
    window.slider = 0;
    app.applicationDidFinishLaunching();
    EXPECT_DOUBLE_EQ(window.slider, 37.6);
}

TEST_F(AppLifecycle, QuittingThroughTheMenuKeepsWhatWasSavedBefore)
{
    settings.setValue(QLatin1String(AppDelegate::thumbnailExpandSliderKey), 12.5);
    app.applicationDidFinishLaunching();
    window.slider = 80;
    app.terminate();
    EXPECT_EQ(window.endings, 1);
    EXPECT_EQ(window.closings, 0);
    EXPECT_THAT(window.take(), Contains("save layout"));
    EXPECT_DOUBLE_EQ(savedSlider().toDouble(), 12.5);
}

TEST_F(AppLifecycle, ASavedValueThatIsNoNumberIsZero)
{
    settings.setValue(QLatin1String(AppDelegate::thumbnailExpandSliderKey), english("large"));
    app.applicationDidFinishLaunching();
    EXPECT_DOUBLE_EQ(window.slider, 0.0);
}

TEST_F(AppLifecycle, WithACameraItIsListed)
{
    addFiles({u"A"});
    plugIn();
    app.applicationDidFinishLaunching();
    EXPECT_TRUE(app.NIVORConnected());
    EXPECT_THAT(alerts.shown, IsEmpty());
    mainQueue.advance(1s);
    app.operationQueue().waitUntilAllOperationsAreFinished();
    mainQueue.advance(1s);
    EXPECT_THAT(namesOf(window.shown), ElementsAre("A"));
}

TEST_F(AppLifecycle, WithoutACameraThereIsAnAlertAndTheTimerStartsAllTheSame)
{
    app.applicationDidFinishLaunching();
    EXPECT_TRUE(hasRecord("applicationDidFinishLaunching:", "Application start (ver1.2.0)"));
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown.front().messageText, english("No camera is connected."));
    plugIn();
    mainQueue.advance(999ms);
    EXPECT_FALSE(app.NIVORConnected());
    mainQueue.advance(1ms);
    EXPECT_TRUE(app.NIVORConnected());
}

TEST_F(AppLifecycle, TheTimerTicksEverySecond)
{
    app.applicationDidFinishLaunching();
    const std::uint64_t before = host->listings();
    mainQueue.advance(5s);
    EXPECT_EQ(host->listings(), before + 5);
}

TEST_F(AppLifecycle, ClosingWaitsForTheListing)
{
    addFiles({u"A", u"B", u"C"});
    plugIn();
    app.applicationDidFinishLaunching();
    card->closeAfter(1);
    mainQueue.advance(1s);
    card->waitUntilReached();
    std::thread opener([this] {
        std::this_thread::sleep_for(30ms);
        card->open();
    });
    EXPECT_TRUE(app.applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_TRUE(app.isClosed());
    EXPECT_FALSE(app.loader().isLoading());
    EXPECT_EQ(requests(OperationCode::GetObjectInfo), 2U);
    opener.join();
}

TEST_F(AppLifecycle, TheEndDisconnectsTheCameraAndIsRecorded)
{
    plugIn();
    app.applicationDidFinishLaunching();
    mainQueue.advance(1s);
    app.operationQueue().waitUntilAllOperationsAreFinished();
    ASSERT_TRUE(engine.connected());
    app.applicationWillTerminate();
    EXPECT_FALSE(engine.connected());
    EXPECT_TRUE(hasRecord("applicationWillTerminate:", "Application end"));
}

TEST_F(AppLifecycle, TheEndWithoutACameraDisconnectsNothing)
{
    app.applicationDidFinishLaunching();
    const auto disconnects = [this] {
        return log.messagesOf("PTPCommunication disconnect").size();
    };
    const std::size_t before = disconnects();
    app.applicationWillTerminate();
    EXPECT_EQ(disconnects(), before);
    EXPECT_TRUE(hasRecord("applicationWillTerminate:", "Application end"));
}

TEST_F(AppLifecycle, QuittingDuringACopyStopsItFirst)
{
    addFiles({u"FILM.MOV"}, 4'000'000);
    list({.pace = {.megabytesPerSecond = 4}});
    once(hasArrived("FILM.MOV", 1), [this] { app.terminate(); });
    copyAll();
    EXPECT_EQ(camera->record().cancelRequests, 1U);
    EXPECT_EQ(window.endings, 0);
    mainQueue.advance({});
    EXPECT_EQ(window.endings, 1);
}

}  // namespace
