/// Copies files from the camera into a folder, one after another.
#pragma once

#include "content/ContentListing.h"
#include "content/CopyResult.h"
#include "content/CopyTargets.h"
#include "content/PolledWorker.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace nivor {

class CopyProgress;
class CopyRunObserver;
class PTPCommunication;
class RollingLogger;

/// Serves one run. Each file gets a free name of its own and streams straight to the disk on a
/// worker thread, while the calling thread watches and can stop it. Nothing that exists is
/// overwritten, and nothing of what was written is removed, not even after a failure or a stop.
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

    void prepare(const ObjectList& items, const std::filesystem::path& destination,
                 CopyProgress& progress) const;
    void copyItem(const std::shared_ptr<ObjectInfoData>& item, CopyTargets& targets,
                  const std::shared_ptr<CopyProgress>& progress);
    [[nodiscard]] std::string refusalOf(std::uint64_t size) const;
    void logRefusal(const std::string& refusal);
    void transfer(Transfer& transfer);
    [[nodiscard]] bool isRoomDoubtful(std::uint64_t size) const;
    static void requireRoom(Transfer& transfer);
    void receive(Transfer& transfer);
    void secure(Transfer& transfer);
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

    PolledWorker worker_;
};

}  // namespace nivor
