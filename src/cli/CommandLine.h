/// The command line program, from its arguments to its exit status.
#pragma once

#include "cli/CliEnvironment.h"

#include <string>
#include <vector>

namespace nivor {

/// Runs one command line; `arguments` are those behind the program's name. Returns the exit status
/// (`ExitCode`). Blocks until the command is done.
int runCommandLine(const std::vector<std::string>& arguments, CliEnvironment& environment);

}  // namespace nivor
