/// A simulated camera behind either of the two seams.
#pragma once

#include "simulator/SimulatedHost.h"
#include "support/ConnectedCamera.h"
#include "support/SimulatedOverUsbfs.h"

#include <memory>
#include <ostream>
#include <utility>

namespace nivor::test {

/// Where a camera is played.
enum class Seam : std::uint8_t {
    Memory,  ///< straight behind `UsbHost`
    Usbfs,   ///< below the real libusb
};

inline std::ostream& operator<<(std::ostream& out, Seam seam)
{
    return out << (seam == Seam::Memory ? "Memory" : "Usbfs");
}

/// One bus with at most one camera on it at a time.
class PlayedCamera {
public:
    explicit PlayedCamera(Seam seam)
    {
        if (seam == Seam::Memory) {
            memory_ = std::make_shared<SimulatedHost>();
        } else {
            bus();
            libusb_ = std::make_shared<LibusbHost>();
        }
    }

    ~PlayedCamera()
    {
        pull();
        libusb_.reset();
        MockedUsbBus::forgetLeft();
    }

    PlayedCamera(const PlayedCamera&) = delete;
    PlayedCamera& operator=(const PlayedCamera&) = delete;

    [[nodiscard]] std::shared_ptr<UsbHost> host() const
    {
        return memory_ ? std::shared_ptr<UsbHost>(memory_) : libusb_;
    }

    /// Puts a camera in the place of the one that is there; false when nobody sees it.
    bool plug(const std::shared_ptr<Card>& card, CameraSettings settings,
              MockedUsbDescription description = {})
    {
        pull();
        camera_ = std::make_shared<SimulatedCamera>(card, std::move(settings));
        if (memory_) {
            memory_->attach(camera_);
            return true;
        }
        description.address = nextAddress();
        address_ = description.address;
        usb_ = std::make_unique<SimulatedOverUsbfs>(bus(), camera_, std::move(description));
        // The computer hears of it from another thread.
        return happens([this] { return newestAddress() == address_; }, 2s);
    }

    void pull()
    {
        if (memory_)
            memory_->detach(camera_);
        if (!usb_)
            return;
        usb_.reset();
        happens([this] { return newestAddress() == 0; });
    }

    [[nodiscard]] SimulatedCamera& camera() const { return *camera_; }

    /// Only below libusb.
    [[nodiscard]] SimulatedOverUsbfs& usb() const { return *usb_; }

private:
    // One for all tests of the program: the library behind it never gives back all that it takes.
    static MockedUsbBus& bus()
    {
        static MockedUsbBus one;
        return one;
    }

    // None comes back before the computer has forgotten it.
    static unsigned nextAddress()
    {
        static unsigned address = 0;
        address = address % 100 + 1;
        return address;
    }

    /// Of the device that was announced last, whatever it is; 0 = none.
    [[nodiscard]] unsigned newestAddress() const
    {
        unsigned address = 0;
        for (const UsbDeviceReport& device : libusb_->devicesOnBus(advice_))
            address = std::max(address, device.location.address);
        return address;
    }

    std::shared_ptr<SimulatedHost> memory_;
    const UsbAccessAdvice advice_{UsbAccessAdvice::Roots{"/nonexistent", "/nonexistent"}};
    std::shared_ptr<LibusbHost> libusb_;
    std::shared_ptr<SimulatedCamera> camera_;
    std::unique_ptr<SimulatedOverUsbfs> usb_;
    unsigned address_ = 0;
};

}  // namespace nivor::test
