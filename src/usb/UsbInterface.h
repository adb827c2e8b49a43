/// The still-image interface of an opened camera, with its two bulk pipes.
#pragma once

#include "foundation/Bytes.h"
#include "usb/UsbResult.h"
#include "usb/UsbTimeouts.h"

#include <cstddef>
#include <span>

namespace nivor {

/// Implemented by libusb, by the simulated camera and by the tests.
///
/// One thread reads while another writes; `open` and `close` are called while neither runs.
/// After the device has left, every call ends at once with `UsbResult::NoDevice`.
class UsbInterface {
public:
    virtual ~UsbInterface() = default;

    UsbInterface(const UsbInterface&) = delete;
    UsbInterface& operator=(const UsbInterface&) = delete;

    virtual UsbResult open() = 0;
    virtual UsbResult close() = 0;

    /// Writes all of `bytes` to the bulk-out pipe in one transfer.
    virtual UsbResult writePipe(ByteView bytes) = 0;

    /// Reads from the bulk-in pipe until `buffer` is full or a transfer ends with a short or
    /// empty packet, and sets `received` to the bytes read, 0 on a failure. A data container of
    /// whole packets ought to be followed by an empty one; its end may end a read without that.
    ///
    /// Bytes are never lost at a time-out: when some have arrived the read is a success with
    /// that count, and the rest comes with the next read. `UsbResult::TransactionTimeout` means
    /// that nothing arrived in time. Touches no byte of `buffer` beyond those received.
    virtual UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                               const UsbTimeouts& timeouts) = 0;

protected:
    UsbInterface() = default;
};

}  // namespace nivor
