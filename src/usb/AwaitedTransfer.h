/// Transfers of libusb that their caller waits for.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "foundation/Bytes.h"
#include "usb/ControlRequest.h"
#include "usb/UsbResult.h"

#include <libusb.h>

#include <chrono>
#include <cstdint>

namespace nivor {

// Another thread has to handle libusb's events meanwhile. libusb's own waiting functions are not
// used, because they look at their end without a lock while that thread may be setting it.

/// Runs a control request and sets `request.transferred`. At most 65535 bytes of data.
UsbResult awaitControl(libusb_device_handle* handle, ControlRequest& request);

/// Writes all bytes to a bulk endpoint in one transfer.
UsbResult awaitBulkOut(libusb_device_handle* handle, std::uint8_t endpoint, ByteView bytes,
                       std::chrono::milliseconds limit);

}  // namespace nivor
