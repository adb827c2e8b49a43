/// Sees files through to the disk while the next ones are fetched from the camera.
#pragma once

#include "foundation/OperationQueue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <string>

namespace nivor {

class DestinationFolder;
class FileHandle;

/// Synchronises and closes files and looks at what has become of them, on threads of its own. One
/// thread adds; destroying the queue waits for all that was added.
class DiskQueue {
public:
    /// Files at once; with one it is slower, and with four not measurably faster.
    static constexpr std::size_t threadCount = 2;

    /// A caller should have no more under way: they are what a crash of the machine may lose.
    static constexpr std::size_t mostFiles = 4;

    explicit DiskQueue(std::shared_ptr<const DestinationFolder> folder);

    /// `file`, open and with all its bytes written, belongs to the queue until the answer is there:
    /// why not all of the announced bytes are safe on the disk, in words; empty when they are.
    std::future<std::string> add(std::shared_ptr<FileHandle> file, std::uint64_t announcedSize);

private:
    [[nodiscard]] std::string secure(FileHandle& file, std::uint64_t announcedSize) const;
    [[nodiscard]] std::string sizeFailure(const std::filesystem::path& path,
                                          std::uint64_t announcedSize) const;

    const std::shared_ptr<const DestinationFolder> folder_;
    std::size_t next_ = 0;

    // Behind all that their operations work on.
    std::array<OperationQueue, threadCount> queues_;
};

}  // namespace nivor
