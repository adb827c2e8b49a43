/// Whole command lines run in this process, against a simulated camera.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/CommandLine.h"
#include "cli/ExitCode.h"
#include "content/SimulatedCameraFixture.h"

#include <nlohmann/json.hpp>

#include <atomic>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace nivor::test {

/// What a command line left behind.
struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class CliFixture : public ::testing::Test {
protected:
    /// Puts the camera on the simulated USB; without it there is none.
    void attach(CameraSettings settings = {})
    {
        camera = std::make_shared<SimulatedCamera>(card, std::move(settings));
        host->attach(camera);
    }

    void attachWith(FaultPlan faults) { attach({.faults = std::move(faults)}); }

    /// A card with two folders that hold a file of the same name each.
    void addUsualCard()
    {
        dcim = card->addFolder(u"DCIM");
        const std::uint32_t first = card->addFolder(u"100NIVOR", dcim);
        const std::uint32_t second = card->addFolder(u"101NIVOR", dcim);
        firstPicture = card->addFile(u"IMG_0001.JPG", 1000, first);
        film = card->addFile(u"IMG_0002.MOV", 2'500'000, first);
        secondPicture = card->addFile(u"IMG_0001.JPG", 3000, second);
    }

    RunResult run(std::vector<std::string> arguments)
    {
        std::istringstream in(typed);
        std::ostringstream out;
        std::ostringstream err;
        errors = &err;
        CliEnvironment environment{
            .in = in,
            .out = out,
            .err = err,
            .logger = log.logger(),
            .defaultLogDirectory = logDirectory(),
            .version = "1.2.3",
            .defaultVendorID = defaultVendorID,
            .makeHost = [this](const SimulationChoice& choice) -> std::shared_ptr<UsbHost> {
                simulation = choice;
                if (choice.folder == "missing")
                    throw std::runtime_error("there is no folder missing");
                return host;
            },
            .engineOn = [this](const std::shared_ptr<UsbHost>& onHost,
                               const SimulationChoice&) -> PTPCommunication& {
                engine.emplace(
                    EngineParts{.host = onHost, .logger = &log.logger(), .agentPause = {}});
                return *engine;
            },
            .devicesOnBus = [this] { return devices; },
            .libraryVersions = {{"Qt", "6.4.2"}, {"libusb", "1.0.26"}},
            .isInputTerminal = isInputTerminal,
            .isErrorTerminal = isErrorTerminal,
            .terminalWidth = [this] { return width; },
            .isInterrupted = [this] { return isInterrupted && isInterrupted(); },
        };
        const int exitCode = runCommandLine(arguments, environment);
        errors = nullptr;
        return {exitCode, out.str(), err.str()};
    }

    /// The log's default folder is the fixture's own, whose records it reads back.
    std::filesystem::path logDirectory() { return log.logger().saveDirectory(); }

    std::string folder() const { return destination.path().string(); }

    std::vector<std::string> filesInFolder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(destination.path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    LogFixture log;
    TemporaryDirectory destination;
    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    std::shared_ptr<SimulatedCamera> camera;
    std::optional<PTPCommunication> engine;

    std::uint32_t dcim = 0;
    std::uint32_t firstPicture = 0;
    std::uint32_t film = 0;
    std::uint32_t secondPicture = 0;

    std::string typed;
    std::int32_t defaultVendorID = anyVendorID;
    bool isInputTerminal = false;
    bool isErrorTerminal = false;
    int width = 80;
    std::function<bool()> isInterrupted{};
    std::vector<UsbDeviceReport> devices;
    SimulationChoice simulation;
    std::ostringstream* errors = nullptr;  ///< of the running command line
};

}  // namespace nivor::test
