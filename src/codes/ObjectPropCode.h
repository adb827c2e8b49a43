/// MTP object property codes (MTP 1.1, B.2).
#pragma once

#include <cstdint>

namespace nivor {

enum class ObjectPropCode : std::uint16_t {
    StorageID = 0xDC01,
    ObjectFormat = 0xDC02,
    ObjectSize = 0xDC04,
    ObjectFileName = 0xDC07,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(ObjectPropCode code);

}  // namespace nivor
