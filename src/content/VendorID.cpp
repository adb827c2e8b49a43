#include "content/VendorID.h"

#include "ptp/PTPCommunication.h"

#include <charconv>

namespace nivor {

std::optional<std::int32_t> parseVendorID(std::string_view text)
{
    if (text.empty() || text == "any")
        return anyVendorID;
    constexpr std::size_t prefixSize = 2;
    constexpr std::size_t mostDigits = 4;
    const std::string_view prefix = text.substr(0, prefixSize);
    if (prefix != "0x" && prefix != "0X")
        return std::nullopt;
    const std::string_view digits = text.substr(prefixSize);
    std::uint16_t vendorID = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), vendorID, 16);
    if (digits.empty() || digits.size() > mostDigits || error != std::errc()
        || end != digits.data() + digits.size())
        return std::nullopt;
    return vendorID;
}

}  // namespace nivor
