/// Writes results and complaints in the program's form.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

#include <nlohmann/json_fwd.hpp>

#include <QString>

#include <string>
#include <string_view>

namespace nivor {

class ObjectInfoData;

/// Writes a line to the error stream, after the program's name.
void complain(CliEnvironment& environment, std::string_view message);

/// Writes a JSON value to the output stream. Text that is not UTF-8 is mended.
void printJson(CliEnvironment& environment, const nlohmann::json& value);

/// Brings all output to where it belongs; false when it could not be written. A reader that has
/// gone away is no news to the user, anything else is complained about.
bool flushOutput(CliEnvironment& environment);

/// The camera's name of an object, without terminator and with nothing in it that could steer a
/// terminal.
QString shownName(const ObjectInfoData& object);

/// The more serious of two statuses of which neither ended the program.
ExitCode worse(ExitCode a, ExitCode b);

}  // namespace nivor
