#include "cli/CameraContents.h"

#include "cli/Output.h"
#include "cli/ProgressLine.h"
#include "content/ByteCount.h"
#include "content/ContentLoader.h"

#include <fmt/format.h>

#include <utility>

namespace nivor {
namespace {

/// What is missing in the listing, in words; empty when nothing is.
std::string problemText(const ContentLoader::Result& result)
{
    std::string problem;
    switch (result.end) {
    case ContentLoader::End::NoStorage:
        problem = "the camera shows no storage. Is there a card in it? A phone must be unlocked, "
                  "and must allow the transfer of pictures";
        break;
    case ContentLoader::End::TooManyFailures:
        problem = "the camera stopped answering; what was read so far may be only a part";
        break;
    case ContentLoader::End::TooMuch:
        problem = "the camera names more objects than this program lists; what follows is only a "
                  "part";
        break;
    case ContentLoader::End::Complete:
    case ContentLoader::End::Stopped:
        if (result.failedObjects > 0)
            problem = countText(result.failedObjects, "object") + " could not be read";
        else if (result.handlesFailed)
            problem = "the camera's list of objects is incomplete";
        break;
    }
    if (!problem.empty() && !result.failure.empty())
        problem += " (" + result.failure + ')';
    return problem;
}

}  // namespace

CameraContents readCameraContents(CliEnvironment& environment, PTPCommunication& engine)
{
    ContentLoader::Result result;
    {
        ProgressLine line(environment);
        const auto observer = [&line](const ContentLoader::Progress& progress) {
            if (line.isDue()) {
                line.show(QStringLiteral("Reading the camera"),
                          QStringLiteral("%1 / %2").arg(progress.done).arg(progress.total));
            }
        };
        ContentLoader loader(engine, {.thumbnails = false}, observer, environment.isInterrupted);
        result = loader.load();
    }

    CameraContents contents{.listing = std::move(result.listing)};
    const std::string problem = problemText(result);
    if (!problem.empty()) {
        complain(environment, problem);
        contents.exitCode = ExitCode::SomeFailed;
    }
    if (result.end == ContentLoader::End::Stopped) {
        complain(environment, "stopped while reading the camera");
        contents.exitCode = ExitCode::Stopped;
    }
    return contents;
}

}  // namespace nivor
