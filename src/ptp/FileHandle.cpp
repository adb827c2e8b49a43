#include "ptp/FileHandle.h"

#include "foundation/Errors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace nivor {
namespace {

constexpr mode_t newFileMode = 0666;  // the user's umask decides

}  // namespace

FileHandle FileHandle::create(const std::filesystem::path& path)
{
    return open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC);
}

FileHandle FileHandle::openForWriting(const std::filesystem::path& path)
{
    return open(path, O_WRONLY | O_CLOEXEC);
}

FileHandle FileHandle::open(const std::filesystem::path& path, int flags)
{
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), flags, newFileMode);
    } while (descriptor < 0 && errno == EINTR);
    return FileHandle(descriptor, descriptor < 0 ? errno : 0, path);
}

FileHandle::FileHandle(int descriptor, std::filesystem::path path)
    : FileHandle(descriptor, descriptor < 0 ? EBADF : 0, std::move(path))
{
}

FileHandle::FileHandle(int descriptor, int openError, std::filesystem::path path)
    : descriptor_(descriptor)
    , openError_(openError)
    , path_(std::move(path))
{
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
    , openError_(std::exchange(other.openError_, EBADF))
    , path_(std::move(other.path_))
{
}

FileHandle::~FileHandle()
{
    if (isOpen())
        ::close(descriptor_);
}

void FileHandle::truncateFile(std::uint64_t length)
{
    requireOpen("truncate");
    int result = 0;
    do {
        result = ::ftruncate(descriptor_, static_cast<off_t>(length));
    } while (result < 0 && errno == EINTR);
    if (result < 0 || ::lseek(descriptor_, static_cast<off_t>(length), SEEK_SET) < 0)
        fail("truncate", errno);
}

void FileHandle::seekToEndOfFile()
{
    requireOpen("seek in");
    if (::lseek(descriptor_, 0, SEEK_END) < 0)
        fail("seek in", errno);
}

void FileHandle::writeData(ByteView bytes)
{
    requireOpen("write to");
    while (!bytes.empty()) {
        const ssize_t written = writeSome(bytes);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail("write to", errno);
        // A write that takes nothing and names no reason would be repeated for ever.
        if (written == 0)
            fail("write to", ENOSPC);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

void FileHandle::synchronizeFile()
{
    requireOpen("synchronize");
    int result = 0;
    do {
        result = ::fsync(descriptor_);
    } while (result < 0 && errno == EINTR);
    // Pipes and some special files have nothing to synchronise.
    if (result < 0 && errno != EINVAL && errno != EROFS)
        fail("synchronize", errno);
}

void FileHandle::closeFile()
{
    requireOpen("close");
    openError_ = EBADF;
    // Not repeated after EINTR: the descriptor is gone by then on Linux.
    if (::close(std::exchange(descriptor_, -1)) < 0 && errno != EINTR)
        fail("close", errno);
}

ssize_t FileHandle::writeSome(ByteView bytes)
{
    return ::write(descriptor_, bytes.data(), bytes.size());
}

void FileHandle::requireOpen(const char* operation) const
{
    if (!isOpen())
        fail(operation, openError_);
}

void FileHandle::fail(const char* operation, int errnoValue) const
{
    throw FileError(errnoValue, std::string("Could not ") + operation + " " + path_.string());
}

}  // namespace nivor
