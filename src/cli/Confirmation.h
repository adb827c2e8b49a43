/// Asks before something is done that can't be undone.
#pragma once

#include "cli/CliEnvironment.h"

#include <string_view>

namespace nivor {

/// Shows `question` on the error stream and reads one line; true only for "y" or "yes".
bool confirm(CliEnvironment& environment, std::string_view question);

}  // namespace nivor
