/// One USB device that has a still-image interface.
#pragma once

#include "codes/StillImageClass.h"
#include "usb/ControlRequest.h"
#include "usb/UsbInterface.h"
#include "usb/UsbResult.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace nivor {

/// Implemented by libusb, by the simulated camera and by the tests.
///
/// `controlRequest` may be called by several threads at once and while the interface's pipes are in
/// use; the other operations are called by one thread at a time.
class UsbDevice {
public:
    virtual ~UsbDevice() = default;

    UsbDevice(const UsbDevice&) = delete;
    UsbDevice& operator=(const UsbDevice&) = delete;

    /// The serial number string in UTF-8, or nothing when the device has none or won't tell.
    /// Asked once per attach at most; neither wakes nor opens the device after that.
    virtual std::optional<std::string> serialNumber() = 0;

    /// What the device calls itself, in UTF-8; empty when that isn't known without asking it. It
    /// may say anything. Any thread.
    virtual std::string productName() = 0;

    virtual UsbResult open() = 0;
    virtual UsbResult close() = 0;

    /// Reads bConfigurationValue of the configuration descriptor at `index` (USB 2.0, 9.6.3).
    virtual UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) = 0;

    virtual UsbResult setConfiguration(std::uint8_t value) = 0;

    /// Finds the first interface of that class, in any alternate setting; it is not opened yet.
    virtual UsbResult findInterface(const InterfaceTriple& triple,
                                    std::shared_ptr<UsbInterface>& found) = 0;

    /// Runs one control request to its end; sets `request.transferred`.
    virtual UsbResult controlRequest(ControlRequest& request) = 0;

protected:
    UsbDevice() = default;
};

}  // namespace nivor
