/// Turns the words of a command line into options.
#pragma once

#include "cli/CliOptions.h"
#include "cli/ExitCode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nivor {

/// Either options to act on, or texts to print and the status to end with.
struct ParsedCommandLine {
    std::optional<CliOptions> options{};
    ExitCode exitCode = ExitCode::Done;
    std::string output{};  ///< for standard output
    std::string error{};   ///< for standard error
};

/// `arguments`: without the program's own name. `versionText`: what --version prints.
ParsedCommandLine parseCommandLine(const std::vector<std::string>& arguments,
                                   const std::string& versionText, std::int32_t defaultVendorID);

}  // namespace nivor
