#include "content/CopyRunFixture.h"
#include "simulator/SimulationOptions.h"
#include "support/PeakMemory.h"

using namespace nivor;
using namespace nivor::test;
namespace fs = std::filesystem;

namespace {

class LargeCopy : public CopyRunFixture { };

TEST_F(LargeCopy, AnObjectBeyondFourGibibytesArrivesWithMemoryFlat)
{
    constexpr std::uint64_t size = (std::uint64_t{5} << 30) + 12'345;
    const ByteBuffer end = {'t', 'h', 'e', ' ', 'e', 'n', 'd'};

    // A file with a hole: it takes no room on the disk until it is copied.
    const TemporaryDirectory source;
    writeText(source.path() / "FILM.MOV", "");
    fs::resize_file(source.path() / "FILM.MOV", size - end.size());
    std::ofstream(source.path() / "FILM.MOV", std::ios::binary | std::ios::app)
        .write(reinterpret_cast<const char*>(end.data()), static_cast<std::streamsize>(end.size()));

    SimulationOptions options;
    options.folder = source.path();
    PTPCommunication folderEngine(
        {.host = makeSimulatedHost(options), .logger = &log.logger(), .agentPause = {}});
    ASSERT_TRUE(folderEngine.connect(anyVendorID));
    const ContentListing listing = ContentLoader(folderEngine, {}).load().listing;
    ASSERT_EQ(listing.objects.size(), 1U);
    ASSERT_EQ(listing.objects.front()->objectCompressedSize(), size);

    const PeakMemory memory;
    CopyRun run(folderEngine, log.logger(), listing.handles, observer);
    const CopyResult result = run.startCopyingItems(listing.objects, folder(), progress);
    // One receive buffer of 16 MiB, and what the camera's side and a sanitizer add.
    EXPECT_LT(memory.mebibytes(), 96);

    ASSERT_EQ(result.copiedCount(), 1U) << observer.lastReason;
    const fs::path copy = folder() / "FILM.MOV";
    EXPECT_EQ(fs::file_size(copy), size);
    std::ifstream file(copy, std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
    const std::istreambuf_iterator<char> rest(file);
    EXPECT_EQ(ByteBuffer(rest, {}), end);
    EXPECT_EQ(progress->copiedSize(), size + 12);
}

}  // namespace
