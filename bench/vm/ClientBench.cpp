// The program's own listing and copying, with its log, on the real USB: without what starting the
// process and printing the result take.
//
// usage: nivor-client-bench list LOG-FOLDER
//        nivor-client-bench copy LOG-FOLDER DESTINATION    (copies the largest file)
//
// Prints a line "NAME|VALUE|UNIT", as the null client does.

#include "Effort.h"

#include "content/ContentLoader.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"
#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "usb/LibusbHost.h"
#include "usb/SystemCameraAgent.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace nivor;
using nivor::bench::Effort;

[[noreturn]] void giveUp(const std::string& what)
{
    std::fprintf(stderr, "client bench: %s\n", what.c_str());
    std::exit(EXIT_FAILURE);
}

/// As the command line program lists: without thumbnails, and with an observer.
ContentListing load(PTPCommunication& engine, double& seconds)
{
    std::size_t done = 0;
    const auto observer = [&done](const ContentLoader::Progress& progress) {
        done = progress.done;
    };
    const Effort effort;
    ContentLoader loader(engine, {.thumbnails = false}, observer, [] { return false; });
    ContentLoader::Result result = loader.load();
    seconds = effort.seconds();
    if (result.end != ContentLoader::End::Complete || result.failedObjects > 0)
        giveUp("the listing is not complete: " + result.failure);
    effort.tell(done, "objects");
    return std::move(result.listing);
}

/// From before the file is created until it is synchronised and closed.
void copyLargest(PTPCommunication& engine, RollingLogger& logger, const ContentListing& listing,
                 const std::string& destination)
{
    const auto largest = std::max_element(
        listing.objects.begin(), listing.objects.end(), [](const auto& a, const auto& b) {
            return a->objectCompressedSize() < b->objectCompressedSize();
        });
    if (largest == listing.objects.end())
        giveUp("the camera is empty");
    CopyRunObserver observer;
    CopyRun run(engine, logger, listing.handles, observer);
    const Effort effort;
    const CopyResult result =
        run.startCopyingItems({*largest}, destination, std::make_shared<CopyProgress>());
    const double seconds = effort.seconds();
    effort.tell((*largest)->objectCompressedSize(), "bytes");
    if (result.copiedCount() != 1)
        giveUp("not copied: " + (result.files.empty() ? "nothing" : result.files[0].failure));
    const auto bytes = static_cast<double>((*largest)->objectCompressedSize());
    std::printf("program|%.3f|MB/s\n", bytes / seconds / 1e6);
}

}  // namespace

int main(int argc, char* argv[])
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    const bool isCopy = words.size() == 3 && words[0] == "copy";
    if (!isCopy && (words.size() != 2 || words[0] != "list")) {
        std::fputs("usage: nivor-client-bench list LOG-FOLDER | copy LOG-FOLDER DESTINATION\n",
                   stderr);
        return 2;
    }
    RollingLogger logger;
    logger.setLogBaseName(std::string(RollingLogger::programName));
    logger.setSaveDirectory(words[1]);
    PTPCommunication engine(
        EngineParts{.host = std::make_shared<LibusbHost>([&logger](std::string_view line) {
                        logger.writeToFile("LibusbHost", "note", line);
                    }),
                    .cameraAgent = std::make_shared<SystemCameraAgent>(),
                    .logger = &logger});
    engine.connect(anyVendorID);
    if (!engine.connected())
        giveUp("no camera");

    double seconds = 0;
    const ContentListing listing = load(engine, seconds);
    if (isCopy) {
        copyLargest(engine, logger, listing, words[2]);
    } else {
        std::printf("program|%.2f|objects/s\n",
                    static_cast<double>(listing.objects.size()) / seconds);
    }
    engine.disconnect();
    return EXIT_SUCCESS;
}
