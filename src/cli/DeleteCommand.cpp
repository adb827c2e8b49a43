#include "cli/DeleteCommand.h"

#include "cli/CameraContents.h"
#include "cli/CameraSession.h"
#include "cli/Confirmation.h"
#include "cli/DeleteDisplay.h"
#include "cli/ObjectPaths.h"
#include "cli/Output.h"
#include "cli/Selecting.h"
#include "content/ByteCount.h"
#include "content/DeleteRun.h"
#include "datasets/ObjectInfoData.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

namespace nivor {
namespace {

constexpr std::size_t mostNamesShown = 10;

/// What the user is about to lose.
std::string questionText(const ObjectList& files, const ObjectPaths& paths)
{
    std::string text;
    std::uint64_t bytes = 0;
    for (const auto& file : files)
        bytes += file->objectCompressedSize();
    const std::size_t shown = std::min(files.size(), mostNamesShown);
    for (std::size_t i = 0; i < shown; ++i)
        text += "  " + paths.shown(*files[i]).toStdString() + '\n';
    if (shown < files.size())
        text += fmt::format("  and {} more\n", files.size() - shown);
    return text
        + fmt::format("Delete {} ({}) from the camera? This can't be undone.",
                      countText(files.size(), "file"), byteCountText(bytes));
}

nlohmann::json resultJson(const DeleteResult& result, const ObjectSelection& selection,
                          const ObjectPaths& paths)
{
    nlohmann::json deleted = nlohmann::json::array();
    nlohmann::json failed = nlohmann::json::array();
    for (const DeletedFile& file : result.files) {
        nlohmann::json json = objectReference(*file.object, paths);
        if (!file.isDeleted)
            json["reason"] = file.failure;
        (file.isDeleted ? deleted : failed).push_back(std::move(json));
    }
    return {{"deleted", deleted},
            {"failed", failed},
            {"unmatched", unmatchedWords(selection)},
            {"stopped", result.isStopped},
            {"notBegun", result.filesNotBegun}};
}

/// Tells that no deletion was tried.
void reportNothing(CliEnvironment& environment, const CliOptions& options,
                   const ObjectSelection& selection, const ObjectPaths& paths, bool isDeclined)
{
    const DeleteResult result{
        .files = {}, .isStopped = isDeclined, .filesNotBegun = selection.files.size()};
    if (options.isJson)
        printJson(environment, resultJson(result, selection, paths));
    complain(environment, "nothing was deleted");
}

ExitCode deleteSelection(CliEnvironment& environment, const CliOptions& options,
                         PTPCommunication& engine, const CameraContents& contents,
                         const ObjectSelection& selection, const ObjectPaths& paths)
{
    DeleteResult result;
    {
        DeleteDisplay display(environment, paths, options.isJson);
        DeleteRun run(engine, environment.logger, contents.listing.handles, display);
        result = run.startDeletingItems(selection.files);
    }
    if (options.isJson)
        printJson(environment, resultJson(result, selection, paths));
    else
        environment.out << "Deleted " << countText(result.deletedCount(), "file") << '\n';
    if (result.isStopped) {
        complain(environment,
                 fmt::format("stopped; {} not deleted", countText(result.filesNotBegun, "file")));
        return ExitCode::Stopped;
    }
    if (result.failedCount() == 0)
        return ExitCode::Done;
    complain(environment,
             fmt::format("{} could not be deleted", countText(result.failedCount(), "file")));
    return ExitCode::SomeFailed;
}

}  // namespace

ExitCode runDeleteCommand(CliEnvironment& environment, const CliOptions& options)
{
    if (!options.isYes && !environment.isInputTerminal) {
        complain(environment, "there is no terminal to ask; with --yes files are deleted unasked");
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
    const ObjectPaths paths(contents.listing);
    if (!selection.isComplete() || selection.files.empty()) {
        reportNothing(environment, options, selection, paths, false);
        return ExitCode::SomeFailed;
    }
    if (!options.isYes && !confirm(environment, questionText(selection.files, paths))) {
        reportNothing(environment, options, selection, paths, true);
        return ExitCode::Stopped;
    }
    return worse(
        contents.exitCode,
        deleteSelection(environment, options, session.engine(), contents, selection, paths));
}

}  // namespace nivor
