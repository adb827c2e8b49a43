/// What can be told about a device on the bus without opening it, for diagnosis.
#pragma once

#include "codes/StillImageClass.h"
#include "usb/UsbHost.h"

#include <cstdint>
#include <string>
#include <vector>

namespace nivor {

/// A process that has a device's node open.
struct UsbDeviceHolder {
    long pid = 0;
    std::string name;  ///< as the process list shows it; empty when the process has just ended

    friend bool operator==(const UsbDeviceHolder&, const UsbDeviceHolder&) = default;
};

struct UsbDeviceReport {
    UsbLocation location;
    std::uint16_t vendorID = 0;
    std::uint16_t productID = 0;
    std::vector<InterfaceTriple> interfaces;  ///< of the active configuration, each only once
    bool isStillImage = false;                ///< one of them is a still-image interface
    bool readable = false;                    ///< this user may read the device node
    bool writable = false;                    ///< this user may write it, which opening takes
    std::vector<UsbDeviceHolder> holders;     ///< other processes that have it open
};

/// The name of an interface class in words, such as "still image", after the table of class
/// codes at usb.org; "class 0x42" for one outside it.
std::string usbClassName(std::uint8_t interfaceClass);

}  // namespace nivor
