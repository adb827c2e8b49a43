#include "cli/CopyCommand.h"

#include "cli/ByteCount.h"
#include "cli/CameraContents.h"
#include "cli/CameraSession.h"
#include "cli/CopyDisplay.h"
#include "cli/Output.h"
#include "cli/Selecting.h"
#include "content/CopyComparison.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/ObjectTree.h"
#include "datasets/ObjectInfoData.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>

namespace nivor {
namespace {

nlohmann::json fileJson(const CopiedFile& file)
{
    nlohmann::json json = objectReference(*file.object);
    json["file"] = file.path.empty() ? nlohmann::json() : nlohmann::json(file.path.string());
    if (file.isCopied)
        json["size"] = file.object->objectCompressedSize();
    else
        json["reason"] = file.failure;
    return json;
}

nlohmann::json resultJson(const CopyResult& result, const ObjectSelection& selection)
{
    nlohmann::json copied = nlohmann::json::array();
    nlohmann::json failed = nlohmann::json::array();
    for (const CopiedFile& file : result.files)
        (file.isCopied ? copied : failed).push_back(fileJson(file));
    return {{"copied", copied},
            {"failed", failed},
            {"unmatched", unmatchedWords(selection)},
            {"stopped", result.isStopped},
            {"stopConfirmed", result.isStopConfirmed},
            {"notBegun", result.filesNotBegun}};
}

std::uint64_t copiedBytes(const CopyResult& result)
{
    std::uint64_t bytes = 0;
    for (const CopiedFile& file : result.files)
        bytes += file.isCopied ? file.object->objectCompressedSize() : 0;
    return bytes;
}

std::string stopText(const CopyResult& result, bool isCopyComplete)
{
    std::string text = "stopped";
    if (result.isStopConfirmed)
        text += "; the camera confirmed it";
    else if (result.isCancelSent)
        text += "; the camera did not confirm it";
    else
        text += " between two files";
    if (isCopyComplete)
        return text + "; not everything is compared";
    if (!result.files.empty() && !result.files.back().isCopied && !result.files.back().path.empty())
        text += ". Partly written: " + result.files.back().path.string();
    if (result.filesNotBegun > 0)
        text += fmt::format(". Not begun: {}", countText(result.filesNotBegun, "file"));
    return text;
}

/// Compares what was copied with the camera, and tells.
void verifyCopies(CliEnvironment& environment, const CliOptions& options, PTPCommunication& engine,
                  const CameraContents& contents, CopyResult& result)
{
    // A line per file would only say twice that there is one.
    CopyDisplay display(environment, true, QStringLiteral("Comparing "));
    CopyComparison comparison(engine, environment.logger, contents.listing.handles, display);
    const std::size_t copied = result.copiedCount();
    const std::size_t same = comparison.compareCopies(result, std::make_shared<CopyProgress>());
    display.finish();
    if (options.isJson)
        return;
    if (same == copied) {
        environment.out << fmt::format("Compared {} with the camera: every byte is the same\n",
                                       countText(same, "file"));
    } else {
        environment.out << fmt::format("Compared with the camera: {} of {} the same\n", same,
                                       countText(copied, "file"));
    }
}

/// Creates the folder if it is missing; answers whether it is there.
bool prepareDestination(CliEnvironment& environment, const std::filesystem::path& destination)
{
    std::error_code error;
    std::filesystem::create_directories(destination, error);
    if (std::filesystem::is_directory(destination))
        return true;
    complain(environment,
             "could not create the folder " + destination.string() + ": " + error.message());
    return false;
}

ExitCode copySelection(CliEnvironment& environment, const CliOptions& options,
                       PTPCommunication& engine, const CameraContents& contents,
                       const ObjectSelection& selection)
{
    CopyDisplay display(environment, options.isJson);
    CopyRun run(engine, environment.logger, contents.listing.handles, display);
    const auto began = environment.now();
    CopyResult result = run.startCopyingItems(selection.files, options.destination,
                                              std::make_shared<CopyProgress>());
    const std::chrono::duration<double> took = environment.now() - began;
    display.finish();

    const std::uint64_t bytes = copiedBytes(result);
    if (!options.isJson) {
        environment.out << fmt::format(
            "Copied {} ({}) to {} in {}{}\n", countText(result.copiedCount(), "file"),
            byteCountText(bytes), options.destination,
            durationText(std::chrono::duration_cast<std::chrono::seconds>(took)),
            took.count() > 0 ? " (" + rateText(static_cast<double>(bytes) / took.count()) + ")"
                             : "");
    }
    const bool isCopyComplete = !result.isStopped;
    if (options.isVerify && isCopyComplete && result.copiedCount() > 0)
        verifyCopies(environment, options, engine, contents, result);
    if (options.isJson)
        printJson(environment, resultJson(result, selection));
    if (result.isStopped) {
        complain(environment, stopText(result, isCopyComplete));
        return ExitCode::Stopped;
    }
    if (result.failedCount() == 0)
        return ExitCode::Done;
    complain(environment,
             countText(result.failedCount(), "file")
                 + (options.isVerify ? " could not be copied or compared, or differ"
                                     : " could not be copied"));
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
