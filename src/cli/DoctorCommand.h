/// The command `nivor doctor`.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

namespace nivor {

/// Shows what a user needs to find out why a camera doesn't work: the cameras, the
/// bus, permissions, who holds what, the place of the log, versions. Opens no device; always
/// `Done`, camera or not, unless a simulation can't be made.
ExitCode runDoctorCommand(CliEnvironment& environment, const CliOptions& options);

}  // namespace nivor
