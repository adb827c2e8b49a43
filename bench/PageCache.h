/// What the kernel keeps of files in memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>

namespace nivor::bench {

struct CachedBytes {
    std::uint64_t size = 0;      ///< of the files
    std::uint64_t resident = 0;  ///< of that, in memory
};

/// Has the kernel drop the files' pages. It keeps those that some process has mapped, so this asks
/// for nothing that a user may not ask for; how much really went is for `cached` to tell.
void dropFromCache(const std::set<std::filesystem::path>& files);

/// Files that can't be read count for nothing. The kernel tells the truth to the owner of a file
/// and to root alone; to others everything seems to be in memory.
CachedBytes cached(const std::set<std::filesystem::path>& files);

}  // namespace nivor::bench
