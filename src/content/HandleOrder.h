/// The order in which the objects of a storage are read.
#pragma once

#include "ptp/HandleBlock.h"

#include <vector>

namespace nivor {

/// The handles by rising number: their decimal texts are read as signed 32-bit numbers, those
/// beyond the range as its end, and handles that are the same then stand by their own number.
std::vector<HandleBlock> inListingOrder(const HandlesDict& handles);

}  // namespace nivor
