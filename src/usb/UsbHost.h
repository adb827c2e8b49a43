/// The computer's view of its USB: which cameras are attached.
#pragma once

#include "usb/UsbDevice.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace nivor {

/// Where a device sits, for messages and diagnosis.
struct UsbLocation {
    unsigned bus = 0;
    unsigned address = 0;
    std::string speed;       ///< in words, such as "high speed (480 Mb/s)"; empty when unknown
    std::string deviceNode;  ///< path of the device file, empty where there is none

    friend bool operator==(const UsbLocation&, const UsbLocation&) = default;
};

/// One still-image interface on the bus, known without opening anything.
struct StillImageInterface {
    std::uint16_t vendorID = 0;
    std::uint16_t productID = 0;
    UsbLocation location;
    std::shared_ptr<UsbDevice> device;
};

/// Implemented by libusb, by the simulated camera and by the tests.
class UsbHost {
public:
    virtual ~UsbHost() = default;

    UsbHost(const UsbHost&) = delete;
    UsbHost& operator=(const UsbHost&) = delete;

    /// All attached interfaces of the still-image triple, in bus order; opens nothing.
    /// A device that is still attached keeps its `device` object from call to call.
    /// One thread at a time.
    virtual std::vector<StillImageInterface> stillImageInterfaces() = 0;

protected:
    UsbHost() = default;
};

}  // namespace nivor
