/// How a camera reads "association 0" in GetObjectHandles (ISO 15740, 10.4.7).
#pragma once

#include <cstdint>

namespace nivor {

enum class ListingStyle : std::uint8_t {
    WholeStorage,  ///< all objects, as the standard says
    RootOnly,      ///< the root's children only, as many phones do
};

}  // namespace nivor
