#include "content/DestinationFolder.h"

#include "foundation/Errors.h"
#include "ptp/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace nivor {

// O_PATH, because a folder that may be written to but not listed is a place to copy to as well.
DestinationFolder::DestinationFolder(std::filesystem::path path)
    : path_(std::move(path))
    , descriptor_(::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
    , openError_(descriptor_ < 0 ? errno : 0)
{
}

DestinationFolder::~DestinationFolder()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

bool DestinationFolder::hasMoved() const
{
    struct stat opened { };
    struct stat named { };
    if (::fstat(descriptor_, &opened) < 0)
        return false;
    if (::stat(path_.c_str(), &named) < 0)
        return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    return opened.st_dev != named.st_dev || opened.st_ino != named.st_ino;
}

std::string DestinationFolder::movedText() const
{
    return "the folder " + path_.string() + " was moved, replaced or removed meanwhile";
}

bool DestinationFolder::isTaken(const std::string& name) const
{
    struct stat status { };
    return ::fstatat(descriptor_, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

FileHandle DestinationFolder::create(const std::string& name) const
{
    return descriptor_ < 0 ? FileHandle::unopened(openError_, path_ / name)
                           : FileHandle::createIn(descriptor_, path_ / name);
}

std::uint64_t DestinationFolder::sizeOf(const std::string& name) const
{
    struct stat status { };
    if (::fstatat(descriptor_, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) < 0)
        fail("look at", name, descriptor_ < 0 ? openError_ : errno);
    if (!S_ISREG(status.st_mode))
        fail("look at", name, ENOENT);
    return static_cast<std::uint64_t>(status.st_size);
}

int DestinationFolder::openForReading(const std::string& name) const
{
    // O_NONBLOCK, lest a pipe that has taken the name holds us up; it means nothing to a file.
    const int descriptor =
        ::openat(descriptor_, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        fail("read", name, descriptor_ < 0 ? openError_ : errno);
    return descriptor;
}

int DestinationFolder::refusalOf(std::uint64_t size) const
{
    struct statvfs disk { };
    // Some network folders know nothing of their disk.
    if (::fstatvfs(descriptor_, &disk) < 0 || disk.f_blocks == 0 || disk.f_frsize == 0)
        return 0;
    if ((disk.f_flag & ST_RDONLY) != 0)
        return EROFS;
    const std::uint64_t blocks = ::geteuid() == 0 ? disk.f_bfree : disk.f_bavail;
    return size / disk.f_frsize >= blocks && size > blocks * disk.f_frsize ? ENOSPC : 0;
}

void DestinationFolder::fail(const char* operation, const std::string& name, int errnoValue) const
{
    throw FileError(errnoValue,
                    std::string("Could not ") + operation + " " + (path_ / name).string());
}

}  // namespace nivor
