/// At which step the last connection attempt failed, for messages.
#pragma once

#include "usb/UsbHost.h"
#include "usb/UsbResult.h"

#include <cstdint>

namespace nivor {

struct ConnectFailure {
    enum class Step : std::uint8_t {
        None,
        FindDevice,
        OpenDevice,
        ReadConfiguration,
        OpenInterface,
        OpenSession,
    };

    Step step = Step::None;
    UsbResult result = UsbResult::Success;
    UsbLocation location{};  ///< of the camera that was tried
};

}  // namespace nivor
