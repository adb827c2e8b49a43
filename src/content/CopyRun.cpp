#include "content/CopyRun.h"

#include "content/CameraGone.h"
#include "content/CopyProgress.h"
#include "content/CopyRunObserver.h"
#include "content/CopyStop.h"
#include "content/DestinationFolder.h"
#include "content/OwnAnswer.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"
#include "foundation/Errors.h"
#include "foundation/ResultText.h"
#include "foundation/Selector.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <utility>

namespace nivor {
namespace {

// FAT, the usual file system of a stick, takes no larger file.
constexpr std::uint64_t largestFatFile = 0xFFFFFFFF;

/// Whether the next file may meet the same as the one that failed with this.
bool isOfTheWholeDisk(int errnoValue)
{
    return errnoValue == ENOSPC || errnoValue == EDQUOT || errnoValue == EROFS;
}

/// The engine's words for a failed transfer, made clearer where it can't know better.
std::string transferFailure(const TransactionFailure& failure, std::uint64_t announced)
{
    if (failure.cause == TransactionFailure::Cause::SinkRefused && announced == 0)
        return "it holds 0 bytes, and the camera sends nothing for it";
    const std::string text = failure.toText();
    return text.empty() ? "the camera did not send it" : text;
}

}  // namespace

/// A file on its way from the camera.
struct CopyRun::Transfer {
    CopiedFile& result;
    HandleBlock handle;
    std::shared_ptr<FileHandle> file;
    std::shared_ptr<CopyProgress> progress;
};

CopyRun::CopyRun(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
                 CopyRunObserver& observer, CopyTargets::CreateFile createFile)
    : engine_(engine)
    , logger_(logger)
    , handles_(std::move(handles))
    , observer_(observer)
    , createFile_(std::move(createFile))
{
}

CopyResult CopyRun::startCopyingItems(const ObjectList& items,
                                      const std::filesystem::path& destination,
                                      const std::shared_ptr<CopyProgress>& progress)
{
    constexpr Selector selector{"startCopyingItems:toDestination:"};
    selector_ = selector.text();
    prepare(items, destination, *progress);
    observer_.copyWillBegin(*progress);
    writeLog(fmt::format("startCopyingItems (copyItemCount = {})", items.size()));

    result_.folder = std::make_shared<DestinationFolder>(destination);
    CopyTargets targets(result_.folder, createFile_);
    disk_.emplace(result_.folder);
    for (const auto& item : items) {
        if (item->isAssociation())
            continue;
        result_.isStopped = result_.isStopped || observer_.isStopRequested();
        if (result_.isStopped)
            ++result_.filesNotBegun;
        else
            copyItem(item, targets, progress);
    }
    awaitArrivals(0, *progress);

    engine_.stopCopyFlgInit();
    observer_.copyDidEnd();
    // Singular here, unlike the opening line; both are what readers of these logs look for.
    writeLog(fmt::format("startCopyingItem (result = {})", resultText(!result_.isError)));
    return std::move(result_);
}

void CopyRun::prepare(const ObjectList& items, const std::filesystem::path& destination,
                      CopyProgress& progress) const
{
    std::uint64_t totalSize = 0;
    std::uint64_t fileCount = 0;
    for (const auto& item : items) {
        totalSize += item->objectCompressedSize();
        fileCount += item->isAssociation() ? 0U : 1U;
    }
    progress.setSourceFile(QString());
    progress.setDestinationURL(QUrl::fromLocalFile(QString::fromStdString(destination.string())));
    progress.setNumberOfCopiedItems(0);
    progress.setNumberOfTotalItems(fileCount);
    progress.setCopiedSize(0);
    progress.setTotalSize(totalSize);
}

void CopyRun::copyItem(const std::shared_ptr<ObjectInfoData>& item, CopyTargets& targets,
                       const std::shared_ptr<CopyProgress>& progress)
{
    const QString cameraName = NVX_stringByTrimmingNullCharacters(item->fileName());
    progress->setSourceFile(cameraName);
    progress->setNumberOfCopiedItems(progress->numberOfCopiedItems() + 1);
    observer_.fileWillBegin(*progress);

    CopiedFile& file = result_.files.emplace_back();
    file.object = item;
    file.failure = reasonNotToAsk(*item);
    if (!file.failure.empty()) {
        observer_.fileWasReceived();
        awaitArrivals(0, *progress);
        conclude(result_.files.size() - 1, *progress);
        return;
    }
    Transfer transfer{file, handles_.value(item->myHandle()), targets.create(cameraName), progress};
    file.path = transfer.file->path();
    this->transfer(transfer);
    targets.recordUse(cameraName);
    observer_.fileWasReceived();
    passToDisk(transfer);
}

/// Why the camera is not asked for it; empty when it is.
std::string CopyRun::reasonNotToAsk(const ObjectInfoData& item)
{
    // Asking on would only litter the folder with empty files.
    if (isCameraGone_)
        return cameraGoneText;
    if (!handles_.contains(item.myHandle()))
        return "the camera no longer has it";
    std::string refusal = refusalOf(item.objectCompressedSize());
    if (!refusal.empty())
        logRefusal(refusal);
    return refusal;
}

/// The file that began last has come, in whole or in part, or could not be created.
void CopyRun::passToDisk(Transfer& transfer)
{
    const std::size_t index = result_.files.size() - 1;
    if (!transfer.file->isOpen()) {
        awaitArrivals(0, *transfer.progress);
        isRoomShort_ = isOfTheWholeDisk(transfer.file->openError());
        conclude(index, *transfer.progress);
        return;
    }
    // What has gone wrong is the reason to treat the next file otherwise.
    const bool isAllWell = transfer.result.failure.empty() && !isRoomShort_;
    const std::uint64_t announcedSize = transfer.result.object->objectCompressedSize();
    arrivals_.push_back({index, transfer.file, disk_->add(transfer.file, announcedSize)});
    awaitArrivals(isAllWell ? DiskQueue::mostFiles : 0, *transfer.progress);
}

/// Waits until no more than `most` files are on their way to the disk, and concludes those that
/// have arrived, in their order.
void CopyRun::awaitArrivals(std::size_t most, const CopyProgress& progress)
{
    while (!arrivals_.empty()) {
        Arrival& next = arrivals_.front();
        const bool isThere =
            next.failure.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        if (!isThere && arrivals_.size() <= most)
            return;
        worker_.waitFor(next.failure, [&] {
            // There is nothing to cancel, but the user sees that the wish is known.
            static_cast<void>(observer_.isStopRequested());
            observer_.copyIsUnderWay(progress);
        });
        const std::string failure = next.failure.get();
        CopiedFile& file = result_.files[next.index];
        // What failed first is the cause of the rest.
        if (file.failure.empty())
            file.failure = failure;
        isRoomShort_ = isOfTheWholeDisk(next.file->failure());
        const std::size_t index = next.index;
        arrivals_.pop_front();
        conclude(index, progress);
    }
}

void CopyRun::conclude(std::size_t index, const CopyProgress& progress)
{
    CopiedFile& file = result_.files[index];
    file.isCopied = file.failure.empty();
    result_.isError = !file.isCopied;
    observer_.fileDidFinish(file, index + 1, progress);
}

/// Why the folder is certain to take no file of that size; empty when it may. To ask the camera all
/// the same would litter the folder, and take the time of a transfer for each of the files left.
std::string CopyRun::refusalOf(std::uint64_t size) const
{
    if (result_.folder->hasMoved())
        return result_.folder->movedText();
    const int error = isRoomShort_ ? result_.folder->refusalOf(size) : 0;
    if (error == 0)
        return {};
    return FileError(error, "Could not copy to " + result_.folder->path().string()).what();
}

/// Once a run: there may be thousands of files left.
void CopyRun::logRefusal(const std::string& refusal)
{
    if (!isRefusalLogged_)
        writeLog(fmt::format("startCopyingItems (not asked for, error = {})", refusal));
    isRefusalLogged_ = true;
}

void CopyRun::transfer(Transfer& transfer)
{
    CopiedFile& result = transfer.result;
    if (!transfer.file->isOpen()) {
        // The camera need not send what there is no place for.
        result.failure =
            FileError(transfer.file->openError(), "Could not create " + result.path.string())
                .what();
        return;
    }

    const auto isUnderWay = [this, &transfer] {
        awaitArrivals(DiskQueue::mostFiles, *transfer.progress);
        observer_.copyIsUnderWay(*transfer.progress);
    };
    // No transaction runs around the transfer, so a stop has nothing to cancel; it is seen before
    // the next file.
    if (isRoomDoubtful(result.object->objectCompressedSize())) {
        worker_.run([&transfer] { requireRoom(transfer); }, isUnderWay);
        if (!result.failure.empty()) {
            logRefusal(result.failure);
        } else if (observer_.isStopRequested()) {
            result_.isStopped = true;
            result.failure = "stopped";
        }
    }
    if (result.failure.empty()) {
        worker_.run([this, &transfer] { receive(transfer); },
                    [this, &isUnderWay] {
                        stopIfRequested(engine_, observer_, result_);
                        isUnderWay();
                    });
    }
}

/// Whether it is likely enough that there is no room for a file of that size. On some disks it
/// takes long to find out, so not for every file.
bool CopyRun::isRoomDoubtful(std::uint64_t size) const
{
    return isRoomShort_ || size > largestFatFile;
}

/// On the worker: finds out before the transfer that there is no room for the file.
void CopyRun::requireRoom(Transfer& transfer)
{
    try {
        transfer.file->requireRoom(transfer.result.object->objectCompressedSize());
    } catch (const FileError& error) {
        transfer.result.failure = error.what();
    }
}

/// On the worker: fetches the object into the file.
void CopyRun::receive(Transfer& transfer)
{
    const std::uint64_t size = transfer.result.object->objectCompressedSize();
    GetObjectCallback callback(transfer.progress, transfer.file);
    const bool isReceived = hasOwnAnswer(
        engine_, [&] { return engine_.getObject(transfer.handle, size, nullptr, &callback); });
    if (isReceived)
        return;
    const TransactionFailure failure = engine_.lastTransactionFailure();
    isCameraGone_ = isCameraGone(failure);
    transfer.result.failure = transferFailure(failure, size);
}

void CopyRun::writeLog(std::string_view message)
{
    logger_.writeToFile("AppDelegate", selector_, message);
}

}  // namespace nivor
