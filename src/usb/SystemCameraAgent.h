/// The camera program of this computer's desktop, asked through the desktop's own tools.
#pragma once

#include "usb/CameraAgent.h"

#include <chrono>
#include <string>

namespace nivor {

/// On macOS it ends the agent "PTPCamera". On Linux it asks the desktop to unmount its cameras,
/// and only when there is one mounted; a system without the tool `gio` has nothing to ask.
class SystemCameraAgent final : public CameraAgent {
public:
    /// No tool is waited for longer than `limit`; it is killed then.
    explicit SystemCameraAgent(std::chrono::milliseconds limit = std::chrono::seconds(5));

    /// Runs at most two tools, so it lasts at most twice the limit. Any thread.
    std::string release() override;

private:
    std::chrono::milliseconds limit_;
};

}  // namespace nivor
