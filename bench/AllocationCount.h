/// Counts the program's own requests for memory.
#pragma once

#include <cstddef>

namespace nivor::bench {

/// How often any thread of the process has called `new` so far.
std::size_t allocationCount();

}  // namespace nivor::bench
