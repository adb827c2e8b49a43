/// What a simulated camera says it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace nivor {

struct CameraIdentity {
    std::uint16_t vendorID = 0xFFFE;  ///< belongs to no maker, so no real camera is mistaken for it
    std::uint16_t productID = 0x0001;
    std::optional<std::string> serialNumber = "SIMULATED-0001";  ///< UTF-8; some devices have none
    std::string productName = "Simulated Camera";                ///< UTF-8
};

}  // namespace nivor
