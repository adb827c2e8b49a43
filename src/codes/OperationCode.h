/// PTP operation codes (ISO 15740, 10.4; MTP 1.1, D.2.37).
#pragma once

#include <cstdint>

namespace nivor {

enum class OperationCode : std::uint16_t {
    GetDeviceInfo = 0x1001,
    OpenSession = 0x1002,
    CloseSession = 0x1003,
    GetStorageIDs = 0x1004,
    GetStorageInfo = 0x1005,
    GetNumObjects = 0x1006,
    GetObjectHandles = 0x1007,
    GetObjectInfo = 0x1008,
    GetObject = 0x1009,
    GetThumb = 0x100A,
    DeleteObject = 0x100B,
    GetObjectPropValue = 0x9803,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(OperationCode code);

}  // namespace nivor
