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

#include <algorithm>
#include <cerrno>
#include <utility>

namespace nivor {
namespace {

// FAT, the usual file system of a stick, takes no larger file.
constexpr std::uint64_t largestFatFile = 0xFFFFFFFF;

/// Why the file at `path` is not what the camera announced; empty when it is.
std::string sizeFailure(const DestinationFolder& folder, const std::filesystem::path& path,
                        std::uint64_t announced)
{
    try {
        const std::uint64_t size = folder.sizeOf(path.filename().string());
        if (size != announced)
            return fmt::format("{} bytes were announced and {} arrived", announced, size);
    } catch (const FileError& error) {
        return error.what();
    }
    return {};
}

std::string movedText(const DestinationFolder& folder)
{
    return "the folder " + folder.path().string() + " was moved, replaced or removed meanwhile";
}

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

/// A file on its way.
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
    for (const auto& item : items) {
        if (item->isAssociation())
            continue;
        result_.isStopped = result_.isStopped || observer_.isStopRequested();
        if (result_.isStopped)
            ++result_.filesNotBegun;
        else
            copyItem(item, targets, progress);
    }

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
    const auto handle = handles_.constFind(item->myHandle());
    if (isCameraGone_) {
        // Asking on would only litter the folder with empty files.
        file.failure = cameraGoneText;
    } else if (handle == handles_.cend()) {
        file.failure = "the camera no longer has it";
    } else if (std::string refusal = refusalOf(item->objectCompressedSize()); !refusal.empty()) {
        file.failure = std::move(refusal);
        logRefusal(file.failure);
    } else {
        Transfer transfer{file, handle.value(), targets.create(cameraName), progress};
        file.path = transfer.file->path();
        this->transfer(transfer);
        targets.recordUse(cameraName);
    }
    file.isCopied = file.failure.empty();
    result_.isError = !file.isCopied;
    observer_.fileDidFinish(file, *progress);
}

/// Why the folder is certain to take no file of that size; empty when it may. To ask the camera all
/// the same would litter the folder, and take the time of a transfer for each of the files left.
std::string CopyRun::refusalOf(std::uint64_t size) const
{
    if (result_.folder->hasMoved())
        return movedText(*result_.folder);
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
        isRoomShort_ = isOfTheWholeDisk(transfer.file->openError());
        // The camera need not send what there is no place for.
        result.failure =
            FileError(transfer.file->openError(), "Could not create " + result.path.string())
                .what();
        return;
    }

    const auto isUnderWay = [this, &transfer] { observer_.copyIsUnderWay(*transfer.progress); };
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
    worker_.run([this, &transfer] { secure(transfer); }, isUnderWay);
    isRoomShort_ = isOfTheWholeDisk(transfer.file->failure());
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

/// On the worker: a file is copied only when all of it has reached the disk.
void CopyRun::secure(Transfer& transfer)
{
    CopiedFile& result = transfer.result;
    const auto note = [&result](std::string failure) {
        // What failed first is the cause of the rest.
        if (result.failure.empty())
            result.failure = std::move(failure);
    };
    try {
        transfer.file->synchronizeFile();
    } catch (const FileError& error) {
        note(error.what());
    }
    try {
        transfer.file->closeFile();
    } catch (const FileError& error) {
        note(error.what());
    }
    note(sizeFailure(*result_.folder, result.path, result.object->objectCompressedSize()));
    if (result_.folder->hasMoved())
        note(movedText(*result_.folder));
}

void CopyRun::writeLog(std::string_view message)
{
    logger_.writeToFile("AppDelegate", selector_, message);
}

}  // namespace nivor
