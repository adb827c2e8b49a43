#include "cli/CopyCommand.h"

#include "cli/CameraContents.h"
#include "cli/CameraSession.h"
#include "cli/CopyDisplay.h"
#include "cli/CopyReport.h"
#include "cli/ObjectPaths.h"
#include "cli/Output.h"
#include "cli/Selecting.h"
#include "content/CopyComparison.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>

namespace nivor {
namespace {

/// Compares what was copied with the camera.
CopyComparisonResult compareCopies(CliEnvironment& environment, PTPCommunication& engine,
                                   const CameraContents& contents, const ObjectPaths& paths,
                                   CopyResult& result)
{
    // A line per file would only say twice that there is one.
    CopyDisplay display(environment, paths, true, QStringLiteral("Comparing "));
    CopyComparison comparison(engine, environment.logger, contents.listing.handles, display);
    return comparison.compareCopies(result, std::make_shared<CopyProgress>());
}

/// Creates the folder if it is missing; answers whether it is there.
bool prepareDestination(CliEnvironment& environment, const std::filesystem::path& destination)
{
    std::error_code error;
    std::filesystem::create_directories(destination, error);
    std::error_code ignored;
    if (std::filesystem::is_directory(destination, ignored))
        return true;
    complain(environment,
             "could not create the folder " + destination.string() + ": " + error.message());
    return false;
}

ExitCode copySelection(CliEnvironment& environment, const CliOptions& options,
                       PTPCommunication& engine, const CameraContents& contents,
                       const ObjectSelection& selection)
{
    const ObjectPaths paths(contents.listing);
    CopyReport report{.selection = selection, .paths = paths};
    {
        CopyDisplay display(environment, paths, options.isJson);
        CopyRun run(engine, environment.logger, contents.listing.handles, display);
        const auto began = environment.now();
        report.result = run.startCopyingItems(selection.files, options.destination,
                                              std::make_shared<CopyProgress>());
        report.took = environment.now() - began;
    }
    report.notCopied = report.result.failedCount();
    if (!options.isJson && !selection.files.empty())
        environment.out << copiedText(report, options.destination) << '\n';
    if (options.isVerify && !report.result.isStopped && report.result.copiedCount() > 0) {
        const std::size_t copied = report.result.copiedCount();
        report.comparison = compareCopies(environment, engine, contents, paths, report.result);
        if (!options.isJson)
            environment.out << comparedText(*report.comparison, copied) << '\n';
    }
    if (options.isJson)
        printJson(environment, toJson(report));
    if (report.result.isStopped) {
        complain(environment, stopText(report));
        return ExitCode::Stopped;
    }
    if (report.result.failedCount() == 0)
        return ExitCode::Done;
    complain(environment, failureText(report));
    return ExitCode::SomeFailed;
}

}  // namespace

ExitCode runCopyCommand(CliEnvironment& environment, const CliOptions& options)
{
    const std::filesystem::path destination(options.destination);
    std::error_code ignored;
    if (std::filesystem::exists(destination, ignored)
        && !std::filesystem::is_directory(destination, ignored)) {
        complain(environment, destination.string() + " is not a folder");
        return ExitCode::Usage;
    }

    CameraSession session(environment, options);
    const ExitCode opened = session.open();
    if (opened != ExitCode::Done)
        return opened;
    const CameraContents contents = readCameraContents(environment, session.engine());
    if (contents.exitCode == ExitCode::Stopped)
        return contents.exitCode;

    const ObjectSelection selection =
        selectForCommand(environment, contents.listing, options.words);
    ExitCode exitCode = selection.isComplete() ? contents.exitCode : ExitCode::SomeFailed;
    if (selection.files.empty() && options.words.isEmpty())
        complain(environment, "there is no file on the camera");
    if (!selection.files.empty() && !prepareDestination(environment, destination))
        return ExitCode::SomeFailed;
    return worse(exitCode,
                 copySelection(environment, options, session.engine(), contents, selection));
}

}  // namespace nivor
