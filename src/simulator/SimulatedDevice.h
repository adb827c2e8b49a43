/// A simulated camera as the host's USB sees it during one attachment.
#pragma once

#include "simulator/SimulatedCamera.h"
#include "simulator/SimulatedInterface.h"
#include "usb/UsbDevice.h"

#include <atomic>
#include <memory>

namespace nivor {

/// Answers `UsbResult::NoDevice` for good once the camera has left; reattaching makes a new one.
/// Opening what is open answers `ExclusiveAccess`: whoever forgets to close finds out.
class SimulatedDevice : public UsbDevice {
public:
    SimulatedDevice(std::shared_ptr<SimulatedCamera> camera, std::shared_ptr<BulkInPipe> pipe);

    std::optional<std::string> serialNumber() override;
    std::string productName() override;
    UsbResult open() override;
    UsbResult close() override;
    UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) override;
    UsbResult setConfiguration(std::uint8_t value) override;
    UsbResult findInterface(const InterfaceTriple& triple,
                            std::shared_ptr<UsbInterface>& found) override;
    UsbResult controlRequest(ControlRequest& request) override;

    [[nodiscard]] bool isPresent() const { return pipe_->isConnected(); }
    [[nodiscard]] bool isOpen() const { return *open_; }

    /// The camera leaves; every call on the device and its interface ends at once. Any thread.
    void leave() { pipe_->disconnect(); }

private:
    /// What the plan says to this call; `NoDevice` once the camera has left.
    [[nodiscard]] UsbResult resultOf(UsbStep step) const;

    const std::shared_ptr<SimulatedCamera> camera_;
    const std::shared_ptr<BulkInPipe> pipe_;
    const std::shared_ptr<std::atomic<bool>> open_;  // shared with the interface
    const std::shared_ptr<SimulatedInterface> interface_;
};

}  // namespace nivor
