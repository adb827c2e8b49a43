/// A USB that has simulated cameras on it instead of real ones.
#pragma once

#include "simulator/SimulatedCamera.h"
#include "simulator/SimulatedDevice.h"
#include "usb/UsbHost.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace nivor {

/// Cameras may be attached and detached from any thread at any time.
class SimulatedHost : public UsbHost {
public:
    /// Plugs a camera in, behind those that are there. It must not be attached anywhere already.
    void attach(std::shared_ptr<SimulatedCamera> camera);

    /// Pulls the plug: every running and later call on the camera's device and interface ends at
    /// once with `UsbResult::NoDevice`. Nothing happens when the camera is not attached.
    void detach(const std::shared_ptr<SimulatedCamera>& camera);

    /// Those that are attached, in the order in which they were.
    [[nodiscard]] std::vector<std::shared_ptr<SimulatedCamera>> cameras() const;

    /// Whether the camera is on the bus; one that vanished by a fault is not.
    [[nodiscard]] bool isAttached(const std::shared_ptr<SimulatedCamera>& camera) const;

    std::vector<StillImageInterface> stillImageInterfaces() override;

    /// How often `stillImageInterfaces` was called.
    [[nodiscard]] std::uint64_t listings() const;

private:
    struct Attachment {
        std::shared_ptr<SimulatedCamera> camera;
        std::shared_ptr<SimulatedDevice> device;
        unsigned address;
    };

    void forgetTheVanished();

    mutable std::mutex mutex_;
    std::vector<Attachment> attachments_;
    unsigned nextAddress_ = 1;
    std::uint64_t listings_ = 0;
};

}  // namespace nivor
