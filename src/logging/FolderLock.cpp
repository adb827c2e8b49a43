#include "logging/FolderLock.h"

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace nivor {

FolderLock::FolderLock(const std::string& folder, std::chrono::milliseconds patience)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (descriptor_ < 0)
        return;
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        isHeld_ = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
        isOthers_ = !isHeld_ && (errno == EWOULDBLOCK || errno == EINTR);
        if (!isOthers_ || std::chrono::steady_clock::now() >= end)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

FolderLock::~FolderLock()
{
    // Closing gives the lock back.
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

}  // namespace nivor
