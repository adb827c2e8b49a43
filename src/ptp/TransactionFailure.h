/// Why the last transaction failed, for messages.
#pragma once

#include "usb/UsbResult.h"

#include <cstdint>
#include <string>

namespace nivor {

/// Recorded beside the transaction's plain Boolean result, which decides.
struct TransactionFailure {
    enum class Cause : std::uint8_t {
        None,
        NotConnected,   ///< no camera is connected
        TimedOut,       ///< the camera was silent for the whole time-out
        Stopped,        ///< a stop was confirmed by the camera
        ReadFailed,     ///< the bulk-in pipe failed with `usbResult`
        SinkRefused,    ///< the sink answered that it takes no more
        SinkError,      ///< the sink raised an error: `detail`
        NoMemory,       ///< the receive buffer could not be allocated
        TooMuchData,    ///< the answer is longer than any such answer can be
        EarlierAnswer,  ///< it completed, with the answer to an earlier transaction
        TooSlow,        ///< the answer came bit by bit and did not end
    };

    Cause cause = Cause::None;
    UsbResult usbResult = UsbResult::Success;
    std::uint16_t responseCode = 0;  ///< the last response received; 0 when none was
    std::string detail{};            ///< UTF-8

    /// One clause in words, such as "the camera did not answer in time"; empty for `None` with
    /// an OK response.
    [[nodiscard]] std::string toText() const;
};

}  // namespace nivor
