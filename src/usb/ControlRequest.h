/// A request on a device's default control pipe.
#pragma once

#include "usb/UsbTimeouts.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace nivor {

/// The setup packet of USB 2.0, 9.3, with its data stage; wLength is the size of `data`.
struct ControlRequest {
    std::uint8_t bmRequestType = 0;
    std::uint8_t bRequest = 0;
    std::uint16_t wValue = 0;
    std::uint16_t wIndex = 0;
    std::span<std::uint8_t> data;  ///< sent, or filled by the device; may stay partly untouched
    UsbTimeouts timeouts{};
    std::size_t transferred = 0;  ///< out: bytes of the data stage that moved
};

}  // namespace nivor
