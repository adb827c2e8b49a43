/// The command `nivor delete`.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

namespace nivor {

/// Deletes the named files on the camera after asking, unless the options say not to ask.
/// Nothing is deleted when one of the names gives no file.
ExitCode runDeleteCommand(CliEnvironment& environment, const CliOptions& options);

}  // namespace nivor
