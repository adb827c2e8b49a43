/// The command `nivor copy`.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

namespace nivor {

/// Copies the named files, or every file, into a folder, which is created if it is missing.
ExitCode runCopyCommand(CliEnvironment& environment, const CliOptions& options);

}  // namespace nivor
