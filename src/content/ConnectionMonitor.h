/// Follows the camera being plugged in and out.
#pragma once

#include <cstdint>
#include <functional>

namespace nivor {

class CameraPriority;
class ContentModel;
class ContentView;
class PTPCommunication;

/// Lives on the main thread. Driven from outside, once a second.
class ConnectionMonitor {
public:
    struct Parts {
        PTPCommunication& engine;
        ContentModel& model;
        ContentView& view;
        const CameraPriority& priority;
        std::int32_t vendorID;
        std::function<void()> setupDataModels;  ///< schedules a load
    };

    /// All parts must outlive the monitor.
    explicit ConnectionMonitor(Parts parts);

    /// Asks the USB whether a camera is there and drops the link to one that is gone or has been
    /// swapped for another. Waits for a running operation only in these two cases.
    void updateNIVORConnectionStatus();

    /// One tick: starts a load when a camera has appeared, empties the list when it has gone, and
    /// shows a snapshot that has been published. While a run has the camera to itself no new
    /// camera is taken up; a tick after the run does that.
    void checkNIVORConnectionTimerFire();

    /// Whether a camera is attached, as of the last look.
    [[nodiscard]] bool NIVORConnected() const { return isConnected_; }
    void setNIVORConnected(bool isConnected) { isConnected_ = isConnected; }

private:
    void showSnapshot();

    Parts parts_;
    bool isConnected_ = false;
};

}  // namespace nivor
