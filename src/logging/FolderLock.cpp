#include "logging/FolderLock.h"

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace nivor {

FolderLock::FolderLock(const std::string& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    // Whoever holds it is about to append one record.
    constexpr int mostTries = 500;
    for (int tries = 0; descriptor_ >= 0 && !isHeld_ && tries < mostTries; ++tries) {
        isHeld_ = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
        if (!isHeld_)
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
