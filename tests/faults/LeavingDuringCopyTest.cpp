// A camera that leaves during a copy, after every n-th byte.
#include "faults/FaultFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::AnyOf;

namespace {

constexpr std::size_t filmSize = 200'000;

/// How many bytes of the container, header included, a camera sends before it leaves.
struct Edge {
    std::string name;
    std::size_t first;
    std::size_t last;
    std::size_t step = 1;

    friend void PrintTo(const Edge& edge, std::ostream* out) { *out << edge.name; }
};

std::vector<Edge> edges()
{
    return {
        {.name = "TheBeginning", .first = 0, .last = 64},
        {.name = "APacket", .first = 511, .last = 513},
        {.name = "APacketOfTheObject", .first = 512 + 11, .last = 512 + 13},
        {.name = "TwoPackets", .first = 1023, .last = 1025},
        {.name = "TheFirstRead", .first = 5119, .last = 5121},
        {.name = "TheSecondRead", .first = 10'239, .last = 10'241},
        {.name = "ATransfer", .first = 131'071, .last = 131'073},
        {.name = "TheEnd", .first = filmSize + 10, .last = filmSize + 12},
        // A prime: nothing that has edges has them there.
        {.name = "AllThatIsBetween", .first = 4'099, .last = filmSize + 12, .step = 4'099},
    };
}

class LeavingDuringCopy : public FaultCells<Edge> {
protected:
    void leaveAfter(std::size_t sent, std::uint32_t handle)
    {
        ASSERT_TRUE(stage->plug(
            card, {.faults = FaultPlan().on(OperationCode::GetObject, fault::Vanish{sent})}));
        const ProcessResources before = ProcessResources::now();
        ASSERT_TRUE(engine->connect(anyVendorID));
        copyAndLose(sent, handle);

        engine->disconnect();
        // The computer hears of it from another thread.
        EXPECT_TRUE(happens([&] { return engine->existsDevice(anyVendorID) == 0; }));
        EXPECT_TRUE((ProcessResources{before.descriptors, before.threads + 1}.areAllThatIsHeld()))
            << "before: " << before << ", now: " << ProcessResources::now();
    }

private:
    // A result keeps the destination folder open, and ends here.
    void copyAndLose(std::size_t sent, std::uint32_t handle)
    {
        const auto listing = load();
        ASSERT_EQ(listing.listing.objects.size(), 2U);

        const auto start = std::chrono::steady_clock::now();
        const CopyResult result = copy(listing.listing);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
        EXPECT_EQ(result.copiedCount(), 0U);
        EXPECT_TRUE(result.isError);
        ASSERT_EQ(result.files.size(), 2U);
        const std::string noData = "the camera sent no data for it";
        EXPECT_THAT(result.files[0].failure, AnyOf(goneText, sent <= 12 ? noData : goneText));
        EXPECT_THAT(result.files[1].failure, AnyOf("the camera is gone", goneText));
        EXPECT_TRUE(logTells({"getObject (result = fail, objHdr = <01000000>)",
                              "startCopyingItem (result = fail)"}));

        // What libusb had in a transfer of its own when the camera left may be lost; nothing else.
        const ByteBuffer bytes = bytesOf(result.files[0].path);
        const std::size_t most = sent > 12 ? sent - 12 : 0;
        EXPECT_LE(bytes.size(), most);
        if (seam() == Seam::Memory) {
            EXPECT_EQ(bytes.size(), most);
        }
        EXPECT_TRUE(PatternContent(handle).matches(0, bytes));
        for (const CopiedFile& file : result.files)
            std::filesystem::remove(file.path);
    }
};

TEST_P(LeavingDuringCopy, LeavesATruePrefixThatCountsAsFailed)
{
    const std::uint32_t handle = card->addFile(u"A.MOV", filmSize);
    card->addFile(u"B.MOV", 100);
    begin(seam());
    longest = std::chrono::seconds(60);
    for (std::size_t sent = row().first; sent <= row().last; sent += row().step) {
        SCOPED_TRACE(sent);
        leaveAfter(sent, handle);
    }
}

INSTANTIATE_TEST_SUITE_P(Cells, LeavingDuringCopy,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(edges())),
                         nameOfCell<Edge>);

}  // namespace
