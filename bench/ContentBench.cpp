// Listing many objects, and copying many small files.

#include "BareClient.h"
#include "HeapUse.h"
#include "Measuring.h"
#include "Table.h"

#include "content/ContentLoader.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"
#include "content/CopyTargets.h"
#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/PTPCommunication.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatedHost.h"

#include <fmt/format.h>

#include <QBuffer>
#include <QImage>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace nivor;
using namespace nivor::bench;
namespace fs = std::filesystem;

void require(bool isMet)
{
    if (!isMet) {
        std::fputs("the camera or the disk failed\n", stderr);
        std::exit(1);
    }
}

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

    /// Takes the place of the one before.
    void plugIn()
    {
        if (camera_)
            host->detach(camera_);
        camera_ = std::make_shared<SimulatedCamera>(card);
        host->attach(camera_);
    }

    void connect()
    {
        plugIn();
        require(engine.connect(anyVendorID));
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

private:
    std::shared_ptr<SimulatedCamera> camera_;
};

/// Objects a second, and the memory that a listing keeps for each.
void measureListing(std::size_t count, const ByteBuffer& thumbnail)
{
    constexpr int pairs = 5;
    Camera camera;
    camera.addFiles(count, 1000, thumbnail);
    std::vector<double> bare;
    std::vector<double> program;
    double bytes = 0;
    for (int pair = 0; pair < pairs; ++pair) {
        camera.connect();
        program.push_back(secondsOf([&] {
            const double before = heapInUse();
            const ContentLoader::Result result = ContentLoader(camera.engine, {}).load();
            const double kept = heapInUse() - before;
            require(result.listing.objects.size() >= count);
            bytes = kept / static_cast<double>(result.listing.objects.size());
        }));
        camera.engine.disconnect();
        camera.plugIn();
        BareClient client(*camera.host);
        bare.push_back(secondsOf([&] {
            for (const std::uint32_t handle : client.handles()) {
                client.transact(OperationCode::GetObjectInfo, {handle});
                if (!thumbnail.empty())
                    client.transact(OperationCode::GetThumb, {handle});
            }
        }));
    }
    const auto objects = static_cast<double>(count);
    print({fmt::format("listing {} objects, {}", count,
                       thumbnail.empty() ? "no thumbnails"
                                         : fmt::format("thumbnails of {} bytes", thumbnail.size())),
           "objects/s", perSecond(objects, program),
           Limit{median(perSecond(objects, bare)), "bare client, no log"}});
    print({"  memory kept for each", "bytes", {bytes}});
}

/// Reports every file as safe at once: what the wait for the disk costs.
class UnsynchronizedFile : public FileHandle {
public:
    explicit UnsynchronizedFile(FileHandle file)
        : FileHandle(std::move(file))
    {
    }

protected:
    int synchronizeOnce() override { return 0; }
};

/// The limit: the files made and written one after another, from memory.
void writePlainly(const ContentListing& listing, const fs::path& folder, std::size_t size,
                  bool isSynchronized)
{
    const ByteBuffer bytes(size, 0x5A);
    for (const auto& object : listing.objects) {
        if (object->isAssociation())
            continue;
        FileHandle file = FileHandle::create(folder / object->myHandle().toStdString());
        file.writeData(bytes);
        if (isSynchronized)
            file.synchronizeFile();
        file.closeFile();
    }
}

/// Files a second through the run, each time beside the same by plain writes: the disk changes its
/// pace from second to second.
void measureSmallFiles(std::size_t count, std::size_t size, bool isSynchronized)
{
    constexpr int pairs = 9;
    Camera camera;
    camera.addFiles(count, size);
    camera.connect();
    const ContentListing listing = ContentLoader(camera.engine, {}).load().listing;
    const fs::path folder = workFolder() / "copies";
    const auto inNewFolder = [&](const std::function<void()>& work) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        return secondsOf(work);
    };
    const CopyTargets::CreateFile unsynchronized = [](const fs::path& path) {
        return std::make_shared<UnsynchronizedFile>(FileHandle::create(path));
    };
    std::vector<double> plain;
    std::vector<double> run;
    for (int pair = 0; pair < pairs; ++pair) {
        plain.push_back(inNewFolder([&] { writePlainly(listing, folder, size, isSynchronized); }));
        CopyRunObserver observer;
        CopyResult result;
        run.push_back(inNewFolder([&] {
            CopyRun copyRun(camera.engine, camera.logger, listing.handles, observer,
                            isSynchronized ? CopyTargets::CreateFile() : unsynchronized);
            result = copyRun.startCopyingItems(listing.objects, folder,
                                               std::make_shared<CopyProgress>());
        }));
        require(result.copiedCount() == count);
    }
    fs::remove_all(folder);
    const auto files = static_cast<double>(count);
    print({fmt::format("copying {} files of {} kB, {}", count, size / 1000,
                       isSynchronized ? "each safe on the disk" : "not waiting for the disk"),
           "files/s", perSecond(files, run),
           Limit{median(perSecond(files, plain)),
                 isSynchronized ? "plain write, fsync, close" : "plain write, close"}});
}

}  // namespace

int main()
{
    printTitle("Listing and copying, simulated camera");
    measureListing(10'000, thumbnailOf(6000));
    measureListing(10'000, {});
    measureSmallFiles(500, 60'000, true);
    measureSmallFiles(500, 60'000, false);
    return 0;
}
