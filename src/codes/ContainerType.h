/// The kinds of container on the bulk pipes (USB Still Image class, 7.1).
#pragma once

#include <cstdint>

namespace nivor {

enum class ContainerType : std::uint16_t {
    Command = 1,
    Data = 2,
    Response = 3,
    Event = 4,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(ContainerType code);

}  // namespace nivor
