/// The seam in memory as a wire.
#pragma once

#include "faults/Wire.h"

#include <cstddef>
#include <memory>

namespace nivor::test {

std::unique_ptr<Wire> makeMemoryWire(std::size_t packetSize);

}  // namespace nivor::test
