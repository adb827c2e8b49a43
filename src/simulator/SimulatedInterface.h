/// The still-image interface of a simulated camera.
#pragma once

#include "simulator/BulkInPipe.h"
#include "simulator/SimulatedCamera.h"
#include "usb/UsbInterface.h"

#include <atomic>
#include <memory>

namespace nivor {

class SimulatedInterface : public UsbInterface {
public:
    SimulatedInterface(std::shared_ptr<SimulatedCamera> camera, std::shared_ptr<BulkInPipe> pipe,
                       std::shared_ptr<const std::atomic<bool>> deviceOpen);

    UsbResult open() override;
    UsbResult close() override;
    UsbResult writePipe(ByteView bytes) override;

    /// As the seam says; besides, as on any USB, a buffer that ends within a packet that the
    /// camera sends loses that packet and answers `UsbResult::Overrun`.
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override;

    [[nodiscard]] bool isOpen() const { return open_; }

private:
    [[nodiscard]] UsbResult readiness(UsbStep step) const;

    const std::shared_ptr<SimulatedCamera> camera_;
    const std::shared_ptr<BulkInPipe> pipe_;
    const std::shared_ptr<const std::atomic<bool>> deviceOpen_;
    std::atomic<bool> open_ = false;
};

}  // namespace nivor
