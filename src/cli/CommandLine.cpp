#include "cli/CommandLine.h"

#include "cli/CommandLineParser.h"
#include "cli/CopyCommand.h"
#include "cli/DeleteCommand.h"
#include "cli/DevicesCommand.h"
#include "cli/DoctorCommand.h"
#include "cli/ListCommand.h"
#include "cli/Output.h"
#include "cli/RunRecords.h"
#include "logging/RollingLogger.h"

#include <exception>
#include <ostream>

namespace nivor {
namespace {

std::string versionText(const CliEnvironment& environment)
{
    std::string text = "NIVOR File Transfer " + environment.version;
    for (const auto& [name, version] : environment.libraryVersions)
        text.append(1, '\n').append(name).append(1, ' ').append(version);
    return text;
}

ExitCode runCommand(CliEnvironment& environment, const CliOptions& options)
{
    using Command = CliOptions::Command;
    switch (options.command) {
    case Command::Devices:
        return runDevicesCommand(environment, options);
    case Command::List:
        return runListCommand(environment, options);
    case Command::Copy:
        return runCopyCommand(environment, options);
    case Command::Delete:
        return runDeleteCommand(environment, options);
    case Command::Doctor:
        return runDoctorCommand(environment, options);
    }
    return ExitCode::Usage;
}

ExitCode runOptions(CliEnvironment& environment, const CliOptions& options)
{
    // The logger wants an absolute path, and the working directory is not its business.
    environment.logger.setSaveDirectory(options.logDirectory.empty()
                                            ? environment.defaultLogDirectory
                                            : std::filesystem::absolute(options.logDirectory));
    const RunRecords records(environment.logger, environment.version);
    try {
        return runCommand(environment, options);
    } catch (const std::exception& error) {
        complain(environment, error.what());
        return ExitCode::SomeFailed;
    }
}

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments, CliEnvironment& environment)
{
    const ParsedCommandLine parsed =
        parseCommandLine(arguments, versionText(environment), environment.defaultVendorID);
    environment.out << parsed.output;
    environment.err << parsed.error << std::flush;
    ExitCode exitCode = parsed.options ? runOptions(environment, *parsed.options) : parsed.exitCode;
    if (!flushOutput(environment) && exitCode == ExitCode::Done)
        exitCode = ExitCode::SomeFailed;
    return static_cast<int>(exitCode);
}

}  // namespace nivor
