/// The real libusb over an emulated kernel as a wire.
#pragma once

#include "faults/Wire.h"

#include <cstdint>
#include <memory>

namespace nivor::test {

std::unique_ptr<Wire> makeLibusbWire(std::uint16_t packetSize);

}  // namespace nivor::test
