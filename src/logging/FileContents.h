/// Reads a file as one piece.
#pragma once

#include <optional>
#include <string>

namespace nivor {

/// Everything in the file at `path`, or nothing when it can't be opened or any of it can't be read.
/// Throws only for want of memory.
std::optional<std::string> contentsOfFile(const std::string& path);

}  // namespace nivor
