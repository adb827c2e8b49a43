/// Reads a USB vendor ID as a user writes it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace nivor {

/// The vendor ID written "0x" and up to four hexadecimal digits, or `anyVendorID` for "any" and
/// for the empty text. Nothing for anything else.
std::optional<std::int32_t> parseVendorID(std::string_view text);

}  // namespace nivor
