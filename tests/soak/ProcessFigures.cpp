#include "soak/ProcessFigures.h"

#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Of every sanitizer's allocator; gcc comes without the header of it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace nivor::soak {
namespace {

std::int64_t liveHeapNow()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
#else
    // Of all arenas; blocks of their own mapping are counted apart.
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
#endif
}

std::size_t statusField(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        std::size_t value = 0;
        if (word == field && status >> value)
            return value;
    }
    return 0;
}

std::size_t entriesOf(const char* folder)
{
    using Entries = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Entries(folder), Entries()));
}

}  // namespace

ProcessFigures ProcessFigures::now()
{
    ProcessFigures figures;
    figures.liveHeap = liveHeapNow();
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    // What is free but kept by the allocator's arenas is nobody's growth.
    ::malloc_trim(0);
#endif
    figures.residentSize = statusField("VmRSS:");
    figures.threads = statusField("Threads:");
    // Looking opens one more for as long as it takes.
    figures.descriptors = entriesOf("/proc/self/fd") - 1;
    return figures;
}

}  // namespace nivor::soak
