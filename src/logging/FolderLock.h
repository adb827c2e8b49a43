/// Keeps other processes out of a folder's log while this one chooses a file.
#pragma once

#include <chrono>
#include <string>

namespace nivor {

/// An advisory lock on the folder itself, held from construction to destruction.
class FolderLock {
public:
    /// Waits for another process up to `patience`.
    FolderLock(const std::string& folder, std::chrono::milliseconds patience);
    ~FolderLock();

    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    [[nodiscard]] bool isHeld() const { return isHeld_; }

    /// Another process has it. Where neither holds, the folder is missing or knows no locks.
    [[nodiscard]] bool isOthers() const { return isOthers_; }

private:
    int descriptor_ = -1;
    bool isHeld_ = false;
    bool isOthers_ = false;
};

}  // namespace nivor
