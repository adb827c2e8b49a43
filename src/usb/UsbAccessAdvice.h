/// Why a camera could not be opened, and what its user can do about it.
#pragma once

#include "usb/UsbDeviceReport.h"
#include "usb/UsbHost.h"
#include "usb/UsbResult.h"

#include <filesystem>
#include <string>
#include <vector>

namespace nivor {

/// Looks into the system's process and device directories; opens no device. Where a directory is
/// missing or may not be read the advice only becomes less exact. Any thread.
class UsbAccessAdvice {
public:
    /// Where to look; tests put directories of their own here.
    struct Roots {
        std::filesystem::path proc = "/proc";
        std::filesystem::path sys = "/sys";
    };

    UsbAccessAdvice();
    explicit UsbAccessAdvice(Roots roots);

    /// A message of one or more sentences for the user; empty for a success.
    [[nodiscard]] std::string message(const UsbLocation& location, UsbResult result) const;

    /// The other processes that have the device node open, by rising process ID. Processes of
    /// other users are seen by the superuser only.
    [[nodiscard]] std::vector<UsbDeviceHolder> holders(const UsbLocation& location) const;

    /// The kernel's drivers bound to the device's still-image interfaces, each name once.
    [[nodiscard]] std::vector<std::string> kernelDrivers(const UsbLocation& location) const;

    /// The file name of the udev rule that gives the logged-in user access to cameras.
    static const char* udevRuleName();

private:
    [[nodiscard]] std::string inUseMessage(const UsbLocation& location) const;

    Roots roots_;
};

}  // namespace nivor
