/// The command `nivor devices`.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

#include <nlohmann/json_fwd.hpp>

namespace nivor {

struct StillImageInterface;

/// Shows the cameras that the options accept; opens none of them.
ExitCode runDevicesCommand(CliEnvironment& environment, const CliOptions& options);

/// One camera as JSON; IDs are written as users type them.
nlohmann::json cameraJson(const StillImageInterface& camera);

/// One camera as a line of text.
std::string cameraText(const StillImageInterface& camera);

}  // namespace nivor
