#include "logging/AppendingFile.h"

#include <cerrno>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor {

AppendingFile::AppendingFile(std::string path)
    : path_(std::move(path))
{
    do
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    while (descriptor_ < 0 && errno == EINTR);
    if (isOpen())
        ::flock(descriptor_, LOCK_SH | LOCK_NB);
    struct stat status { };
    if (isOpen() && ::fstat(descriptor_, &status) == 0) {
        device_ = status.st_dev;
        inode_ = status.st_ino;
        mode_ = status.st_mode;
    }
}

AppendingFile::AppendingFile(AppendingFile&& other) noexcept
{
    *this = std::move(other);
}

AppendingFile& AppendingFile::operator=(AppendingFile&& other) noexcept
{
    std::swap(path_, other.path_);
    std::swap(descriptor_, other.descriptor_);
    std::swap(device_, other.device_);
    std::swap(inode_, other.inode_);
    std::swap(mode_, other.mode_);
    return *this;
}

AppendingFile::~AppendingFile()
{
    if (isOpen())
        ::close(descriptor_);
}

bool AppendingFile::isAppendedToByOthers(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isLocked = ::flock(descriptor, LOCK_EX | LOCK_NB) < 0 && errno == EWOULDBLOCK;
    ::close(descriptor);
    return isLocked;
}

std::optional<std::int64_t> AppendingFile::sizeInPlace() const
{
    struct stat status { };
    if (!isOpen() || ::stat(path_.c_str(), &status) != 0 || status.st_dev != device_
        || status.st_ino != inode_ || status.st_mode != mode_)
        return std::nullopt;
    return std::int64_t{status.st_size};
}

void AppendingFile::append(std::string_view bytes)
{
    // One write takes everything unless the disk is full or a signal comes in between.
    while (isOpen() && !bytes.empty()) {
        const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return;
    }
}

}  // namespace nivor
