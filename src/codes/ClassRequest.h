/// Class-specific control requests (USB Still Image class, 5.2).
#pragma once

#include <cstdint>

namespace nivor {

enum class ClassRequest : std::uint8_t {
    CancelRequest = 0x64,
    GetExtendedEventData = 0x65,
    DeviceReset = 0x66,
    GetDeviceStatus = 0x67,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(ClassRequest code);

}  // namespace nivor
