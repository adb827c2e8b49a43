/// The 32-bit result codes of the USB seam, in the numbers that the log shows.
#pragma once

#include <cstdint>

namespace nivor {

/// What became of a USB operation. The values are those that a user's log shows after "error: ",
/// so each cause has one of its own; `LibusbResult.h` says which libusb error becomes which.
enum class UsbResult : std::uint32_t {
    Success = 0,
    Error = 0xE00002BC,               ///< an error that has no code of its own
    NoMemory = 0xE00002BD,            ///< the host has no memory for the transfer
    NoDevice = 0xE00002C0,            ///< the device is gone
    NotPrivileged = 0xE00002C1,       ///< this user may not open the device
    BadArgument = 0xE00002C2,         ///< the request itself is wrong
    ExclusiveAccess = 0xE00002C5,     ///< another program holds the device or its interface
    Unsupported = 0xE00002C7,         ///< the host can't do this
    IOError = 0xE00002CA,             ///< the transfer failed on the wire
    NotOpen = 0xE00002CD,             ///< the handle was never opened, or is closed
    Overrun = 0xE00002E8,             ///< the device sent more than was asked for
    Aborted = 0xE00002EB,             ///< the transfer was cancelled
    NotFound = 0xE00002F0,            ///< no such interface, endpoint or descriptor
    PipeStalled = 0xE000404F,         ///< the endpoint answered with a stall
    TransactionTimeout = 0xE0004051,  ///< nothing arrived in time
};

/// Whether the operation did what was asked.
constexpr bool succeeded(UsbResult result)
{
    return result == UsbResult::Success;
}

/// The code as the log prints it with "%x".
constexpr std::uint32_t codeOf(UsbResult result)
{
    return static_cast<std::uint32_t>(result);
}

/// What the code means, in words for a user's message; never empty.
const char* toText(UsbResult result);

}  // namespace nivor
