// Listing many objects, and copying many small files.

#include "Measuring.h"

#include "content/ContentLoader.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"
#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "ptp/PTPCommunication.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatedHost.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QImage>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace nivor;
using namespace nivor::bench;
namespace fs = std::filesystem;

/// A JPEG of 160 by 120 pixels, the usual thumbnail, of about `bytes` bytes.
ByteBuffer thumbnailOf(std::size_t bytes)
{
    QImage image(160, 120, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int noise = static_cast<int>(random() % 48U);
            image.setPixel(x, y, qRgb(x + noise, y + noise, 100 + noise));
        }
    }
    QByteArray file;
    for (int quality = 20; quality <= 100 && static_cast<std::size_t>(file.size()) < bytes;
         ++quality) {
        file.clear();
        QBuffer buffer(&file);
        image.save(&buffer, "JPEG", quality);
    }
    return {file.begin(), file.end()};
}

/// An engine on a simulated camera, with a log on the disk.
class Camera {
public:
    Camera()
    {
        logger.setLogBaseName("Bench");
        logger.setSaveDirectory(workFolder() / "log");
    }

    void connect()
    {
        host->attach(std::make_shared<SimulatedCamera>(card));
        engine.connect(anyVendorID);
    }

    void addFiles(std::size_t count, std::uint64_t size, const ByteBuffer& thumbnail = {})
    {
        std::uint32_t folder = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (i % 1000 == 0)
                folder = card->addFolder(u"FOLDER");
            const std::uint32_t file = card->addFile(
                QStringLiteral("IMG_%1.JPG").arg(i, 5, 10, QChar(u'0')).toStdU16String(), size,
                folder);
            if (!thumbnail.empty())
                card->setThumbnail(file, thumbnail);
        }
    }

    RollingLogger logger;
    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    PTPCommunication engine{{.host = host, .logger = &logger, .agentPause = {}}};
};

void Listing(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const bool withThumbnails = state.range(1) != 0;
    const ByteBuffer thumbnail = thumbnailOf(6000);
    Camera camera;
    camera.addFiles(count, 1000, withThumbnails ? thumbnail : ByteBuffer());
    camera.connect();
    double bytesPerObject = 0;
    for (auto _ : state) {
        const auto before = ::mallinfo2();
        const ContentLoader::Result result = ContentLoader(camera.engine, {}).load();
        const auto after = ::mallinfo2();
        if (result.listing.objects.size() < count)
            state.SkipWithError("objects are missing");
        bytesPerObject =
            static_cast<double>(after.uordblks + after.hblkhd - before.uordblks - before.hblkhd)
            / static_cast<double>(result.listing.objects.size());
    }
    state.counters["objects/s"] = benchmark::Counter(static_cast<double>(count),
                                                     benchmark::Counter::kIsIterationInvariantRate);
    state.counters["bytes/object"] = bytesPerObject;
    if (withThumbnails)
        state.counters["thumbnail_bytes"] = static_cast<double>(thumbnail.size());
}

/// What the steps of a copy cost one by one, without the run that strings them together.
struct Steps {
    std::vector<double> create, transfer, synchronize, close;
};

void copyStepByStep(Camera& camera, const ContentListing& listing, const fs::path& folder,
                    Steps& steps)
{
    for (const auto& object : listing.objects) {
        if (object->isAssociation())
            continue;
        std::shared_ptr<FileHandle> file;
        steps.create.push_back(secondsOf([&] {
            file = std::make_shared<FileHandle>(
                FileHandle::create(folder / object->myHandle().toStdString()));
        }));
        steps.transfer.push_back(secondsOf([&] {
            GetObjectCallback sink(nullptr, file);
            camera.engine.getObject(listing.handles.value(object->myHandle()),
                                    object->objectCompressedSize(), nullptr, &sink);
        }));
        steps.synchronize.push_back(secondsOf([&] { file->synchronizeFile(); }));
        steps.close.push_back(secondsOf([&] { file->closeFile(); }));
    }
}

/// Copies the files through the run, and beside it step by step without it. In pairs, since the
/// disk changes its pace from second to second.
void CopyingSmallFiles(benchmark::State& state)
{
    constexpr int pairs = 7;
    constexpr double microseconds = 1e6;
    const auto count = static_cast<std::size_t>(state.range(0));
    Camera camera;
    camera.addFiles(count, 60'000);
    camera.connect();
    const ContentListing listing = ContentLoader(camera.engine, {}).load().listing;

    Steps steps;
    std::vector<double> own;
    std::vector<double> run;
    for (auto _ : state) {
        for (int pair = 0; pair < pairs; ++pair) {
            const fs::path folder = workFolder() / "copies";
            fs::remove_all(folder);
            fs::create_directories(folder);
            const double bare = secondsOf([&] { copyStepByStep(camera, listing, folder, steps); });
            fs::remove_all(folder);
            fs::create_directories(folder);
            CopyRunObserver observer;
            CopyResult result;
            const double whole = secondsOf([&] {
                CopyRun copyRun(camera.engine, camera.logger, listing.handles, observer);
                result = copyRun.startCopyingItems(listing.objects, folder,
                                                   std::make_shared<CopyProgress>());
            });
            if (result.copiedCount() != count)
                state.SkipWithError("files are missing");
            run.push_back(whole);
            own.push_back((whole - bare) / static_cast<double>(count) * microseconds);
            fs::remove_all(folder);
        }
        state.SetIterationTime(median(run));
    }
    state.counters["own_us/file"] = median(own);
    state.counters["create_us"] = median(steps.create) * microseconds;
    state.counters["transfer_us"] = median(steps.transfer) * microseconds;
    state.counters["fsync_us"] = median(steps.synchronize) * microseconds;
    state.counters["close_us"] = median(steps.close) * microseconds;
    state.counters["files/s"] = static_cast<double>(count) / median(run);
}

BENCHMARK(Listing)
    ->ArgNames({"objects", "thumbnails"})
    ->Args({10'000, 1})
    ->Args({10'000, 0})
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(CopyingSmallFiles)
    ->ArgNames({"files"})
    ->Args({500})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
