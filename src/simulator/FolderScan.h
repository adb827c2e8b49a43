/// Reads what a folder holds, with all its sub-folders.
#pragma once

#include "simulator/CardObject.h"
#include "simulator/FolderRoot.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace nivor {

struct FolderScan {
    struct Found {
        CardObject object;           ///< without its picture's extents
        std::filesystem::path path;  ///< relative to the root
    };

    /// Bounds, so that no folder tree, however deep or wide, takes all memory or file handles.
    static constexpr std::size_t mostObjects = 200'000;
    static constexpr unsigned deepest = 64;

    /// Files and folders in order of their names, each folder before its contents, with handles
    /// from 1 on. Symbolic links, special files and hidden ones are left out, and so is what
    /// can't be listed and what exceeds the bounds.
    static std::vector<Found> of(const FolderRoot& root);
};

}  // namespace nivor
