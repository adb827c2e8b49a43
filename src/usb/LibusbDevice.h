/// One USB device through libusb.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "usb/LibusbHandle.h"
#include "usb/LibusbInterface.h"
#include "usb/UsbDevice.h"
#include "usb/UsbHost.h"

#include <libusb.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nivor {

/// Stands for one attach: a device that is plugged in again is another object, for the old one's
/// libusb device is kept and so can't be mistaken for the new one's, whatever its address.
class LibusbDevice final : public UsbDevice, public std::enable_shared_from_this<LibusbDevice> {
public:
    LibusbDevice(std::shared_ptr<libusb_context> context, libusb_device* device,
                 LibusbInterface::Note note);
    ~LibusbDevice() override;

    std::optional<std::string> serialNumber() override;
    std::string productName() override;
    UsbResult open() override;
    UsbResult close() override;
    UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) override;

    /// Sends nothing when the configuration is the active one already: the device would begin anew
    /// and might lose the command behind it.
    UsbResult setConfiguration(std::uint8_t value) override;

    UsbResult findInterface(const InterfaceTriple& triple,
                            std::shared_ptr<UsbInterface>& found) override;
    UsbResult controlRequest(ControlRequest& request) override;

    /// The device was unplugged: every call ends with `NoDevice` from now on.
    void markGone();

    [[nodiscard]] const UsbLocation& location() const { return location_; }
    [[nodiscard]] std::uint16_t vendorID() const { return descriptor_.idVendor; }
    [[nodiscard]] std::uint16_t productID() const { return descriptor_.idProduct; }

    /// The triples of all interfaces of the active configuration, or of the first one when none
    /// is active, in the order of their descriptors; an alternate setting counts like any other.
    struct Interface {
        std::uint8_t number;
        InterfaceTriple triple;
    };
    [[nodiscard]] std::vector<Interface> interfaces() const;

private:
    struct FreeConfig {
        void operator()(libusb_config_descriptor* config) const
        {
            libusb_free_config_descriptor(config);
        }
    };
    using Config = std::unique_ptr<libusb_config_descriptor, FreeConfig>;

    UsbResult activeConfig(Config& config) const;
    std::optional<std::string> readSerialNumber();
    std::shared_ptr<LibusbHandle> handle() const;

    const std::shared_ptr<libusb_context> context_;
    libusb_device* const device_;
    const LibusbInterface::Note note_;
    const std::shared_ptr<std::atomic<bool>> gone_;
    libusb_device_descriptor descriptor_{};
    UsbLocation location_;

    mutable std::mutex handleMutex_;
    std::shared_ptr<LibusbHandle> handle_;

    std::mutex serialMutex_;
    bool serialAsked_ = false;
    std::optional<std::string> serial_;
};

}  // namespace nivor
