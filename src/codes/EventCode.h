/// PTP event codes (ISO 15740, 12.4).
#pragma once

#include <cstdint>

namespace nivor {

enum class EventCode : std::uint16_t {
    CancelTransaction = 0x4001,
    ObjectAdded = 0x4002,
    ObjectRemoved = 0x4003,
    StoreAdded = 0x4004,
    StoreRemoved = 0x4005,
    DeviceInfoChanged = 0x4008,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(EventCode code);

}  // namespace nivor
