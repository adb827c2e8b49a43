/// Copies files from the camera into a folder, one after another.
#pragma once

#include "content/ContentListing.h"
#include "content/CopyResult.h"
#include "content/CopyTargets.h"
#include "content/DiskQueue.h"
#include "content/PolledWorker.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace nivor {

class CopyProgress;
class CopyRunObserver;
class FileHandle;
class ObjectInfoData;
class PTPCommunication;
class RollingLogger;

/// Serves one run. Each file gets a free name of its own and streams straight into it on a worker
/// thread, while the calling thread watches and can stop it. While a file is fetched, those before
/// it are seen through to the disk; results are told in the order of the files. Nothing that exists
/// is overwritten, and nothing of what was written is removed, not even after a failure or a stop.
class CopyRun {
public:
    /// `handles`: those of the listing that the items come from.
    CopyRun(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
            CopyRunObserver& observer, CopyTargets::CreateFile createFile = {});

    /// Copies the files among `items`, in their order; folders are passed over. Returns when all
    /// is done, failed or stopped. `progress` is reset first and advanced from then on.
    CopyResult startCopyingItems(const ObjectList& items, const std::filesystem::path& destination,
                                 const std::shared_ptr<CopyProgress>& progress);

private:
    struct Transfer;

    /// A file on its way to the disk: its place in the result, and what is still to be said of it.
    struct Arrival {
        std::size_t index;
        std::shared_ptr<FileHandle> file;
        std::future<std::string> failure;
    };

    void prepare(const ObjectList& items, const std::filesystem::path& destination,
                 CopyProgress& progress) const;
    void copyItem(const std::shared_ptr<ObjectInfoData>& item, CopyTargets& targets,
                  const std::shared_ptr<CopyProgress>& progress);
    [[nodiscard]] std::string reasonNotToAsk(const ObjectInfoData& item);
    [[nodiscard]] std::string refusalOf(std::uint64_t size) const;
    void logRefusal(const std::string& refusal);
    void transfer(Transfer& transfer);
    [[nodiscard]] bool isRoomDoubtful(std::uint64_t size) const;
    static void requireRoom(Transfer& transfer);
    void receive(Transfer& transfer);
    void passToDisk(Transfer& transfer);
    void awaitArrivals(std::size_t most, const CopyProgress& progress);
    void conclude(std::size_t index, const CopyProgress& progress);
    void writeLog(std::string_view message);

    PTPCommunication& engine_;
    RollingLogger& logger_;
    const HandlesDict handles_;
    CopyRunObserver& observer_;
    const CopyTargets::CreateFile createFile_;

    std::string_view selector_;  ///< of the operation under way, for the log
    CopyResult result_;
    bool isCameraGone_ = false;
    bool isRoomShort_ = false;  ///< the disk has refused something of the last file that was tried
    bool isRefusalLogged_ = false;

    std::deque<Arrival> arrivals_;  ///< the oldest first
    std::optional<DiskQueue> disk_;
    PolledWorker worker_;
};

}  // namespace nivor
