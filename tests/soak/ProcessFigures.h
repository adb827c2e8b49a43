/// What the process holds at a moment.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nivor::soak {

/// Linux only: reads /proc. Figures of a process at rest; one that works meanwhile blurs them.
struct ProcessFigures {
    std::int64_t liveHeap = 0;     ///< bytes allocated and not freed
    std::size_t residentSize = 0;  ///< KiB; the allocator's reserve and a sanitizer's own included
    std::size_t descriptors = 0;
    std::size_t threads = 0;

    static ProcessFigures now();
};

}  // namespace nivor::soak
