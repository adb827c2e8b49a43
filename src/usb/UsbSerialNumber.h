/// Reads a device's serial number string, without opening the device where that is possible.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "foundation/Bytes.h"
#include "usb/LibusbHandle.h"

#include <libusb.h>

#include <cstdint>
#include <optional>
#include <string>

namespace nivor {

/// What the kernel read when the device was plugged in; nothing where there is no such record.
/// The record has to bear the device's address, for its port may have got another device since.
std::optional<std::string> serialNumberKnownToSystem(libusb_device* device);

/// The same of its product string.
std::optional<std::string> productNameKnownToSystem(libusb_device* device);

/// Asks the device itself, in its first language; at most a few seconds.
std::optional<std::string> serialNumberFromDevice(LibusbHandle& handle, std::uint8_t stringIndex);

/// The text of a string descriptor (USB 2.0, 9.6.7) in UTF-8. Nothing when it is not one, holds
/// half a surrogate pair or is longer than 511 bytes.
std::optional<std::string> textOfStringDescriptor(ByteView descriptor);

}  // namespace nivor
