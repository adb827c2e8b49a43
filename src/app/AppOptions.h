/// What the window program is started with.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nivor {

struct AppOptions {
    std::int32_t vendorID;
    bool isSimulation = false;
    std::filesystem::path simulationFolder{};  ///< served as the card; empty: the built-in card
    bool isSimulationWritable = false;         ///< deletions reach the folder's files
    double simulationPace = 0;                 ///< MB/s; 0: as fast as it goes
    std::filesystem::path logDirectory{};
    std::filesystem::path windowPicture{};  ///< where to save a picture of the window, then end
};

/// What became of reading them.
struct AppOptionsResult {
    std::optional<AppOptions> options;  ///< nothing when the program is to end at once
    std::string message{};              ///< to be printed then
    int exitCode = 0;
};

/// Reads the arguments behind the program's name. `defaults`: what holds where they say nothing.
AppOptionsResult parseAppOptions(const std::vector<std::string>& arguments,
                                 const AppOptions& defaults, const std::string& version);

}  // namespace nivor
