#include "logging/AppendingFile.h"

#include <cerrno>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor {

AppendingFile::AppendingFile(const std::string& path)
{
    do
        descriptor_ = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    while (descriptor_ < 0 && errno == EINTR);
}

AppendingFile::AppendingFile(AppendingFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
{
}

AppendingFile::~AppendingFile()
{
    if (isOpen())
        ::close(descriptor_);
}

std::int64_t AppendingFile::size() const
{
    struct stat status { };
    return ::fstat(descriptor_, &status) == 0 ? std::int64_t{status.st_size} : 0;
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
