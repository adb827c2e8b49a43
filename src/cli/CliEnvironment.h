/// Everything that the command line program touches outside itself.
#pragma once

#include "cli/CliOptions.h"
#include "usb/UsbDeviceReport.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace nivor {

class PTPCommunication;
class RollingLogger;
class UsbHost;

/// Given by `main`, or by a test with a simulated camera and string streams.
struct CliEnvironment {
    std::istream& in;
    std::ostream& out;  ///< results only
    std::ostream& err;  ///< progress, questions and complaints

    RollingLogger& logger;
    std::filesystem::path defaultLogDirectory;

    std::string version;           ///< of the program
    std::int32_t defaultVendorID;  ///< when the command line names none

    /// Makes the USB to work on. Raises an error in words when a simulation can't be made.
    std::function<std::shared_ptr<UsbHost>(const SimulationChoice&)> makeHost;

    /// The engine on that USB. Called once at most.
    std::function<PTPCommunication&(const std::shared_ptr<UsbHost>&, const SimulationChoice&)>
        engineOn;

    /// Every device on the computer's own buses.
    std::function<std::vector<UsbDeviceReport>()> devicesOnBus;

    /// Names and versions of the libraries in use.
    std::vector<std::pair<std::string, std::string>> libraryVersions{};

    bool isInputTerminal = false;
    bool isErrorTerminal = false;

    /// Columns of the terminal that `err` is; 0 when unknown.
    std::function<int()> terminalWidth = [] { return 0; };

    /// Whether the user has asked to stop.
    std::function<bool()> isInterrupted = [] { return false; };

    std::function<std::chrono::steady_clock::time_point()> now = &std::chrono::steady_clock::now;
};

}  // namespace nivor
