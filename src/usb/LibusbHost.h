/// The computer's USB as libusb sees it.
#pragma once

#include "usb/UsbAccessAdvice.h"
#include "usb/UsbDeviceReport.h"
#include "usb/UsbHost.h"
#include "usb/UsbResult.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace nivor {

/// Owns a libusb context of its own. Looking never opens or wakes a device: the list follows the
/// system's own plug events. A device may outlive its host; it keeps the context alive.
///
/// The list operations are called by one thread at a time; the devices they return may meanwhile
/// be in use on others.
class LibusbHost final : public UsbHost {
public:
    /// Takes one line in English that is worth logging. Called on the thread that opens an
    /// interface, while no lock of this layer is held.
    using Note = std::function<void(std::string_view line)>;

    explicit LibusbHost(Note note = {});
    ~LibusbHost() override;

    /// How libusb's start went. After a failure both lists stay empty.
    [[nodiscard]] UsbResult status() const;

    std::vector<StillImageInterface> stillImageInterfaces() override;

    /// Every device on every bus in bus order, with who may use it and who does; opens nothing.
    std::vector<UsbDeviceReport> devicesOnBus(const UsbAccessAdvice& advice = UsbAccessAdvice());

private:
    class Devices;

    std::unique_ptr<Devices> devices_;
};

}  // namespace nivor
