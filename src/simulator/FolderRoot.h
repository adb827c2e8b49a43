/// Opens what lies inside one folder, and nothing outside it.
#pragma once

#include "simulator/FileDescriptor.h"

#include <filesystem>
#include <optional>

namespace nivor {

/// Paths are walked part by part from a handle of the folder, and no part may be a symbolic link,
/// so that nothing that is put into the folder later leads out of it. Any thread.
class FolderRoot {
public:
    /// Throws `FileError` when `folder` can't be opened or is no folder.
    explicit FolderRoot(const std::filesystem::path& folder);

    /// A regular file for reading, or nothing.
    [[nodiscard]] FileDescriptor openFile(const std::filesystem::path& relative) const;

    /// A folder for listing or for work relative to it, or nothing. Empty = the folder itself.
    [[nodiscard]] FileDescriptor openFolder(const std::filesystem::path& relative) const;

    /// Deletes a file, or an empty folder; false when that fails.
    [[nodiscard]] bool remove(const std::filesystem::path& relative, bool isFolder) const;

private:
    FileDescriptor root_;
};

}  // namespace nivor
