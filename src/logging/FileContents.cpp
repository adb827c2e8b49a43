#include "logging/FileContents.h"

#include <cerrno>
#include <cstddef>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor {

std::optional<std::string> contentsOfFile(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    const auto close = [](const int* open) { ::close(*open); };
    const std::unique_ptr<const int, decltype(close)> closer(&descriptor, close);

    // One byte more than there should be, so that the end shows without growing the text again.
    struct stat status { };
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::string contents(static_cast<std::size_t>(status.st_size) + 1, '\0');

    for (std::size_t length = 0;;) {
        if (length == contents.size())
            contents.resize(2 * contents.size());
        const ssize_t count =
            ::read(descriptor, contents.data() + length, contents.size() - length);
        if (count == 0) {
            contents.resize(length);
            return contents;
        }
        if (count > 0)
            length += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::nullopt;
    }
}

}  // namespace nivor
