/// Keeps other processes out of a folder's log while this one chooses a file.
#pragma once

#include <string>

namespace nivor {

/// An advisory lock on the folder itself, held from construction to destruction. Waits up to half
/// a second for it. Without it (no such folder, a file system that has no locks, a process that
/// hangs) work goes on all the same: a log must never stop its program.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder);
    ~FolderLock();

    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    [[nodiscard]] bool isHeld() const { return isHeld_; }

private:
    int descriptor_ = -1;
    bool isHeld_ = false;
};

}  // namespace nivor
