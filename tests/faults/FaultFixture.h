/// An engine on a camera that misbehaves, and what has to be true afterwards whatever it did.
#pragma once

#include "content/CopyRunFixture.h"
#include "faults/PlayedCamera.h"
#include "support/LogRecords.h"
#include "support/ProcessResources.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace nivor::test {

// The engine's waits pass so many times faster; what counts against its time-outs stays the same.
// A camera on a machine under load has more than a second for most answers, then.
inline constexpr unsigned faultPace = 4;

/// What is told of a camera that left.
inline constexpr const char* goneText =
    "reading from the camera failed: the device is gone (0xe00002c0)";

/// After each test the engine must work with a good camera in the place of the bad one, and then
/// give back all that the test has taken.
class FaultFixture : public ::testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    // What libraries make once and keep is not any test's.
    static void SetUpTestSuite()
    {
        WarmUp::run(Seam::Memory);
        WarmUp::run(Seam::Usbfs);
    }

    void begin(Seam seam)
    {
        // The log stays open from its first record on.
        log.logger().writeToFile("FaultFixture", "begin", "begin");
        held_ = ProcessResources::now();
        stage.emplace(seam);
        engine.emplace(EngineParts{
            .host = stage->host(), .logger = &log.logger(), .agentPause = {}, .pace = faultPace});
        began_ = Clock::now();
    }

    /// Plugs the camera in and connects to it.
    void connect(Seam seam, CameraSettings settings)
    {
        begin(seam);
        ASSERT_TRUE(stage->plug(card, std::move(settings)));
        ASSERT_TRUE(engine->connect(anyVendorID));
        ASSERT_TRUE(engine->connected());
    }

    ContentLoader::Result load(bool thumbnails = false)
    {
        return ContentLoader(*engine, {.thumbnails = thumbnails}).load();
    }

    CopyResult copy(const ContentListing& listing)
    {
        RecordingObserver observer;
        CopyRun run(*engine, log.logger(), listing.handles, observer);
        return run.startCopyingItems(listing.objects, destination.path(),
                                     std::make_shared<CopyProgress>());
    }

    /// Whether these messages are in the log, in this order, whatever else is between them.
    [[nodiscard]] ::testing::AssertionResult logTells(
        const std::vector<std::string>& messages) const
    {
        const std::vector<LogRecord> records = log.records();
        auto from = records.begin();
        for (const std::string& message : messages) {
            from = std::find_if(from, records.end(),
                                [&](const LogRecord& record) { return record.message == message; });
            if (from == records.end())
                return ::testing::AssertionFailure()
                    << "not in the log, or not there: " << message << tailOf(records);
            ++from;
        }
        return ::testing::AssertionSuccess();
    }

    /// A wait that has no end would be far beyond this; so is one that is not shortened.
    void expectNoLongWait(std::chrono::seconds most) const
    {
        EXPECT_LT(Clock::now() - began_, most);
    }

    void expectGoodCameraWorks()
    {
        engine->disconnect();
        const auto good = std::make_shared<MemoryCard>();
        const std::uint32_t file = good->addFile(u"GOOD.JPG", 20'000, good->addFolder(u"DCIM"));
        ASSERT_TRUE(stage->plug(good, {}));
        const ProcessResources before = ProcessResources::now();
        ASSERT_TRUE(engine->connect(anyVendorID));
        const auto result = load();
        EXPECT_EQ(result.end, ContentLoader::End::Complete) << result.failure;
        EXPECT_THAT(namesOf(result.listing.objects), ::testing::ElementsAre("DCIM", "GOOD.JPG"));
        {
            const TemporaryDirectory folder;
            RecordingObserver observer;
            CopyRun run(*engine, log.logger(), result.listing.handles, observer);
            const CopyResult copied = run.startCopyingItems(result.listing.objects, folder.path(),
                                                            std::make_shared<CopyProgress>());
            EXPECT_EQ(copied.copiedCount(), 1U) << observer.lastReason;
            EXPECT_TRUE(holdsObject(folder.path() / "GOOD.JPG", file, 20'000));
        }
        engine->disconnect();
        // The engine keeps its receive thread.
        EXPECT_TRUE((ProcessResources{before.descriptors, before.threads + 1}.areAllThatIsHeld()))
            << "before: " << before << ", now: " << ProcessResources::now();
    }

    void TearDown() override
    {
        if (!engine)
            return;
        expectNoLongWait(longest);
        expectGoodCameraWorks();
        engine.reset();
        stage.reset();
        EXPECT_TRUE(held_.areAllThatIsHeld())
            << "before: " << held_ << ", now: " << ProcessResources::now();
    }

    std::chrono::seconds longest{20};  ///< that the whole test may take
    LogFixture log;
    TemporaryDirectory destination;
    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::optional<PlayedCamera> stage;
    std::optional<PTPCommunication> engine;

private:
    struct WarmUp {
        static void run(Seam seam)
        {
            PlayedCamera camera(seam);
            camera.plug(std::make_shared<MemoryCard>(), {});
            LogFixture records;
            PTPCommunication engine(
                {.host = camera.host(), .logger = &records.logger(), .agentPause = {}});
            EXPECT_TRUE(engine.connect(anyVendorID));
            engine.disconnect();
        }
    };

    static std::string tailOf(const std::vector<LogRecord>& records)
    {
        constexpr std::size_t most = 30;
        std::string text = "\nThe last records:";
        for (std::size_t i = records.size() - std::min(most, records.size()); i < records.size();
             ++i)
            text += "\n  " + records[i].message.substr(0, 120);
        return text;
    }

    ProcessResources held_;
    Clock::time_point began_;
};

/// A cell: a row of the table, behind one of the seams.
template <typename Row>
class FaultCells : public FaultFixture,
                   public ::testing::WithParamInterface<std::tuple<Seam, Row>> {
protected:
    Seam seam() const { return std::get<0>(this->GetParam()); }
    const Row& row() const { return std::get<1>(this->GetParam()); }
};

/// The test's name of a cell.
template <typename Row>
std::string nameOfCell(const ::testing::TestParamInfo<std::tuple<Seam, Row>>& info)
{
    std::ostringstream name;
    name << std::get<0>(info.param) << std::get<1>(info.param).name;
    return name.str();
}

inline auto bothSeams()
{
    return ::testing::Values(Seam::Memory, Seam::Usbfs);
}

}  // namespace nivor::test
