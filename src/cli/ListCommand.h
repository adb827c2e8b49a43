/// The command `nivor list`.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

namespace nivor {

/// Shows the camera's files and folders as a tree, or as JSON.
ExitCode runListCommand(CliEnvironment& environment, const CliOptions& options);

}  // namespace nivor
