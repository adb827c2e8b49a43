#include "cli/CopyCommand.h"

#include "cli/ByteCount.h"
#include "cli/CameraContents.h"
#include "cli/CameraSession.h"
#include "cli/CopyDisplay.h"
#include "cli/Output.h"
#include "cli/Selecting.h"
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

std::string stopText(const CopyResult& result)
{
    std::string text = "stopped";
    if (result.isStopConfirmed)
        text += "; the camera confirmed it";
    else if (result.isCancelSent)
        text += "; the camera did not confirm it";
    else
        text += " between two files";
    if (!result.files.empty() && !result.files.back().isCopied && !result.files.back().path.empty())
        text += ". Partly written: " + result.files.back().path.string();
    if (result.filesNotBegun > 0)
        text += fmt::format(". Not begun: {}", countText(result.filesNotBegun, "file"));
    return text;
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
    const CopyResult result = run.startCopyingItems(selection.files, options.destination,
                                                    std::make_shared<CopyProgress>());
    const std::chrono::duration<double> took = environment.now() - began;
    display.finish();

    const std::uint64_t bytes = copiedBytes(result);
    if (options.isJson) {
        printJson(environment, resultJson(result, selection));
    } else {
        environment.out << fmt::format(
            "Copied {} ({}) to {} in {}{}\n", countText(result.copiedCount(), "file"),
            byteCountText(bytes), options.destination,
            durationText(std::chrono::duration_cast<std::chrono::seconds>(took)),
            took.count() > 0 ? " (" + rateText(static_cast<double>(bytes) / took.count()) + ")"
                             : "");
    }
    if (result.isStopped) {
        complain(environment, stopText(result));
        return ExitCode::Stopped;
    }
    if (result.failedCount() == 0)
        return ExitCode::Done;
    complain(environment,
             fmt::format("{} could not be copied", countText(result.failedCount(), "file")));
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
