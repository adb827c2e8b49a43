/// How a simulated camera takes a Cancel Request (USB Still Image class, 5.2.1 and 5.2.4).
#pragma once

#include "codes/ResponseCode.h"

#include <optional>

namespace nivor {

/// As it stands, a well-behaved camera: it stops at once and says OK at the first status poll.
struct CancelBehaviour {
    unsigned busyPolls = 0;                  ///< status polls answered DeviceBusy after a stop
    bool neverOK = false;                    ///< all polls after a stop answer DeviceBusy
    bool emptyStatus = false;                ///< Get Device Status succeeds with 0 bytes
    bool ignored = false;                    ///< takes the Cancel Request and goes on sending
    std::optional<ResponseCode> response{};  ///< sends a response for the stopped transaction
};

}  // namespace nivor
