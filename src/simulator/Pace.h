/// How fast a simulated camera works.
#pragma once

#include <chrono>

namespace nivor {

struct Pace {
    double megabytesPerSecond = 0;               ///< 10^6 bytes a second on bulk-in; 0 = no limit
    std::chrono::milliseconds perTransaction{};  ///< from a command to the start of its answer
};

}  // namespace nivor
