#include "ptp/FileHandle.h"

#include "foundation/Errors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace nivor {
namespace {

constexpr mode_t newFileMode = 0666;  // the user's umask decides
constexpr int creating = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;

bool isWantOfRoom(int errnoValue)
{
    return errnoValue == ENOSPC || errnoValue == EDQUOT || errnoValue == EFBIG;
}

}  // namespace

FileHandle FileHandle::create(const std::filesystem::path& path)
{
    return open(AT_FDCWD, path, creating, path);
}

FileHandle FileHandle::createIn(int folder, const std::filesystem::path& path)
{
    return open(folder, path.filename(), creating, path);
}

FileHandle FileHandle::unopened(int errnoValue, std::filesystem::path path)
{
    return FileHandle(-1, errnoValue, std::move(path));
}

FileHandle FileHandle::openForWriting(const std::filesystem::path& path)
{
    return open(AT_FDCWD, path, O_WRONLY | O_CLOEXEC, path);
}

FileHandle FileHandle::open(int folder, const std::filesystem::path& lookedUp, int flags,
                            const std::filesystem::path& path)
{
    int descriptor = -1;
    do {
        descriptor = ::openat(folder, lookedUp.c_str(), flags, newFileMode);
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
    , failure_(other.failure_)
    , path_(std::move(other.path_))
{
}

FileHandle::~FileHandle()
{
    if (isOpen())
        ::close(descriptor_);
}

void FileHandle::requireRoom(std::uint64_t size)
{
    requireOpen("make room for");
    const int error = size > 0 && reserveOnce(size) < 0 ? errno : 0;
    // A reservation that broke off may have taken something, and one that is not used up would stay
    // with the file for good.
    truncateFile(0);
    // Many file systems reserve nothing, and take the file all the same.
    if (isWantOfRoom(error))
        fail("make room for", error);
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
        result = synchronizeOnce();
    } while (result < 0 && errno == EINTR);
    // Pipes and some special files have nothing to synchronise.
    if (result < 0 && errno != EINVAL)
        fail("synchronize", errno);
}

void FileHandle::closeFile()
{
    requireOpen("close");
    openError_ = EBADF;
    // Not repeated after EINTR: the descriptor is gone by then on Linux.
    const int result = closeOnce();
    descriptor_ = -1;
    if (result < 0 && errno != EINTR)
        fail("close", errno);
}

ssize_t FileHandle::writeSome(ByteView bytes)
{
    return ::write(descriptor_, bytes.data(), bytes.size());
}

int FileHandle::reserveOnce(std::uint64_t size)
{
    return ::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size));
}

int FileHandle::synchronizeOnce()
{
    return ::fsync(descriptor_);
}

int FileHandle::closeOnce()
{
    return ::close(descriptor_);
}

void FileHandle::requireOpen(const char* operation)
{
    if (!isOpen())
        fail(operation, openError_);
}

void FileHandle::fail(const char* operation, int errnoValue)
{
    if (failure_ == 0)
        failure_ = errnoValue;
    throw FileError(errnoValue, std::string("Could not ") + operation + " " + path_.string());
}

}  // namespace nivor
