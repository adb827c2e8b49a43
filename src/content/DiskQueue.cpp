#include "content/DiskQueue.h"

#include "content/DestinationFolder.h"
#include "foundation/Errors.h"
#include "ptp/FileHandle.h"

#include <fmt/format.h>

#include <utility>

namespace nivor {

DiskQueue::DiskQueue(std::shared_ptr<const DestinationFolder> folder)
    : folder_(std::move(folder))
{
}

std::future<std::string> DiskQueue::add(std::shared_ptr<FileHandle> file,
                                        std::uint64_t announcedSize)
{
    // Shared, because operations have to be copyable.
    const auto task = std::make_shared<std::packaged_task<std::string()>>(
        [this, file = std::move(file), announcedSize] { return secure(*file, announcedSize); });
    std::future<std::string> failure = task->get_future();
    queues_.at(next_++ % threadCount).addOperation([task] { (*task)(); });
    return failure;
}

std::string DiskQueue::secure(FileHandle& file, std::uint64_t announcedSize) const
{
    std::string failure;
    const auto note = [&failure](std::string next) {
        // What failed first is the cause of the rest.
        if (failure.empty())
            failure = std::move(next);
    };
    const std::filesystem::path path = file.path();
    try {
        file.synchronizeFile();
    } catch (const FileError& error) {
        note(error.what());
    }
    try {
        file.closeFile();
    } catch (const FileError& error) {
        note(error.what());
    }
    note(sizeFailure(path, announcedSize));
    if (folder_->hasMoved())
        note(folder_->movedText());
    return failure;
}

/// Why the file at `path` is not what the camera announced; empty when it is.
std::string DiskQueue::sizeFailure(const std::filesystem::path& path,
                                   std::uint64_t announcedSize) const
{
    try {
        const std::uint64_t size = folder_->sizeOf(path.filename().string());
        if (size != announcedSize)
            return fmt::format("{} bytes were announced and {} arrived", announcedSize, size);
    } catch (const FileError& error) {
        return error.what();
    }
    return {};
}

}  // namespace nivor
