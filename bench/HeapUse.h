/// How much of the heap is in use.
#pragma once

#include <malloc.h>

namespace nivor::bench {

/// Bytes that were asked for and not given back, with what the allocator adds to each block. What
/// it keeps for later doesn't count, so this tells what something takes to the byte.
inline double heapInUse()
{
    const auto heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

}  // namespace nivor::bench
