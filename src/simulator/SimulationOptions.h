/// Makes the simulated USB that the program runs on when it is asked for one.
#pragma once

#include "simulator/FaultPlan.h"
#include "simulator/Pace.h"
#include "simulator/SimulatedHost.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace nivor {

struct SimulationOptions {
    /// Served as the card; nothing = the built-in card.
    std::optional<std::filesystem::path> folder{};
    bool writable = false;  ///< deletions reach the folder's files
    Pace pace{};
    FaultPlan faults{};
};

/// A host with one camera attached, of the default `CameraIdentity`.
/// Throws `FileError` when the folder can't be opened.
std::shared_ptr<SimulatedHost> makeSimulatedHost(const SimulationOptions& options);

}  // namespace nivor
