/// The system console: the few diagnostics that do not go to the rolling log.
#pragma once

#include <string_view>

namespace nivor {

/// Writes one line to standard error. May be called from any thread; lines never interleave.
void writeToSystemConsole(std::string_view line);

}  // namespace nivor
