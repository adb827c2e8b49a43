/// How much a camera may say in answer to one question, and for how long.
#pragma once

#include <chrono>
#include <cstdint>
#include <limits>

namespace nivor {

/// For data that is collected in memory. A data phase in which a byte comes now and then never
/// times out, and its length is the camera's own word: without bounds of its own, an answer could
/// take all memory and all time.
struct DatasetBounds {
    std::uint64_t bytes = std::numeric_limits<std::uint64_t>::max();  ///< header included
    std::chrono::milliseconds time = std::chrono::hours(24);          ///< from the command on
};

}  // namespace nivor
