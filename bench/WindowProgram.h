/// The whole program but for a real screen and a real camera.
#pragma once

#include "app/AppDelegate.h"
#include "app/EventLoopQueue.h"
#include "app/FolderChooser.h"
#include "app/MainWindow.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatedHost.h"

#include <QSettings>

#include <filesystem>
#include <functional>
#include <memory>

namespace nivor::bench {

/// For a `main` that makes windows: no screen is needed, and texts are English. Before the
/// application object, and after it.
void beginWithoutScreen();
void installEnglish();

/// One at a time; needs an application object.
class WindowProgram {
public:
    /// `usb`: what the program sees of `host`, if that is not all.
    explicit WindowProgram(std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>(),
                           std::shared_ptr<UsbHost> usb = {});

    /// To be filled before the camera is plugged in.
    [[nodiscard]] MemoryCard& card() { return *card_; }

    void plugIn() { host_->attach(camera_); }
    void unplug() { host_->detach(camera_); }
    [[nodiscard]] SimulatedCamera& camera() { return *camera_; }

    /// Turns the event loop until the condition is met; a tick every second, as in the program.
    void turnUntil(const std::function<bool()>& isMet);

    /// Plugs the camera in and turns the event loop until the window shows all of these objects;
    /// returns how many seconds that took.
    double list(int objects);

    /// Turns it on until the listing has published everything that it had to.
    void settle();

private:
    class NoAlerts : public Alerts {
    public:
        int runModal(const Alert& /*alert*/) override { return 0; }
    };

    class NoFolder : public FolderChooser {
    public:
        std::optional<QUrl> chooseFolder() override { return std::nullopt; }
    };

    std::filesystem::path folder_;
    RollingLogger logger_;
    std::shared_ptr<MemoryCard> card_ = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedCamera> camera_ = std::make_shared<SimulatedCamera>(card_);
    std::shared_ptr<SimulatedHost> host_;
    PTPCommunication engine_;
    EventLoopQueue mainQueue_;
    QSettings settings_;
    NoAlerts alerts_;
    NoFolder chooser_;

public:
    MainWindow window{mainQueue_, settings_};
    AppDelegate controller{{.engine = engine_,
                            .logger = logger_,
                            .mainQueue = mainQueue_,
                            .window = window,
                            .alerts = alerts_,
                            .folderChooser = chooser_,
                            .settings = settings_,
                            .vendorID = anyVendorID,
                            .version = "0",
                            .logDirectory = folder_ / "log"}};
};

}  // namespace nivor::bench
