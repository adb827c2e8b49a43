#include "cli/CopyReport.h"

#include "cli/ObjectPaths.h"
#include "cli/Selecting.h"
#include "content/ByteCount.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace nivor {
namespace {

using Outcome = CopyComparisonResult::Outcome;

// Over less than this a rate says more about the disk's cache than about the camera.
constexpr std::chrono::duration<double> shortestRated{0.5};

std::uint64_t copiedBytes(const CopyResult& result)
{
    std::uint64_t bytes = 0;
    for (const CopiedFile& file : result.files)
        bytes += file.isCopied ? file.object->objectCompressedSize() : 0;
    return bytes;
}

nlohmann::json verifiedJson(const CopyReport& report, std::size_t index)
{
    const Outcome outcome =
        report.comparison ? report.comparison->outcomes[index] : Outcome::NotCompared;
    return outcome == Outcome::NotCompared ? nlohmann::json()
                                           : nlohmann::json(outcome == Outcome::Same);
}

nlohmann::json fileJson(const CopyReport& report, std::size_t index)
{
    const CopiedFile& file = report.result.files[index];
    nlohmann::json json = objectReference(*file.object, report.paths);
    json["file"] = file.path.empty() ? nlohmann::json() : nlohmann::json(file.path.string());
    json["verified"] = verifiedJson(report, index);
    if (file.isCopied)
        json["size"] = file.object->objectCompressedSize();
    else
        json["reason"] = file.failure;
    return json;
}

}  // namespace

std::string copiedText(const CopyReport& report, const std::string& destination)
{
    const std::uint64_t bytes = copiedBytes(report.result);
    std::string text =
        fmt::format("Copied {} ({}) to {} in {}", countText(report.result.copiedCount(), "file"),
                    byteCountText(bytes), destination,
                    durationText(std::chrono::duration_cast<std::chrono::seconds>(report.took)));
    if (report.took >= shortestRated)
        text += " (" + rateText(static_cast<double>(bytes) / report.took.count()) + ')';
    return text;
}

std::string comparedText(const CopyComparisonResult& comparison, std::size_t copied)
{
    const std::size_t same = comparison.count(Outcome::Same);
    const std::size_t different = comparison.count(Outcome::Different);
    const std::size_t compared = same + different;
    if (same == copied)
        return "Compared " + countText(same, "file") + " with the camera: every byte is the same";
    std::string text = "Compared ";
    if (compared < copied)
        text += fmt::format("{} of ", compared);
    text += countText(copied, "file") + " with the camera";
    if (different > 0)
        return text + fmt::format(": {} the same, {} different", same, different);
    return same > 0 ? text + ", all the same" : text;
}

std::string stopText(const CopyReport& report)
{
    const CopyResult& result = report.result;
    std::string text = "stopped";
    if (result.isStopConfirmed)
        text += "; the camera confirmed it";
    else if (result.isCancelSent)
        text += "; the camera did not confirm it";
    else
        text += " between two files";
    if (report.comparison)
        return text + "; not everything is compared";
    if (!result.files.empty() && !result.files.back().isCopied && !result.files.back().path.empty())
        text += ". Partly written: "
            + visibleName(QString::fromStdString(result.files.back().path.string())).toStdString();
    if (result.filesNotBegun > 0)
        text += fmt::format(". Not begun: {}", countText(result.filesNotBegun, "file"));
    return text;
}

std::string failureText(const CopyReport& report)
{
    const std::size_t different =
        report.comparison ? report.comparison->count(Outcome::Different) : 0;
    const std::size_t notCompared = report.result.failedCount() - report.notCopied - different;
    std::string text;
    const auto add = [&text](const std::string& part) {
        text += (text.empty() ? "" : "; ") + part;
    };
    if (report.notCopied > 0)
        add(countText(report.notCopied, "file") + " could not be copied");
    if (different > 0)
        add(countText(different, "file") + (different == 1 ? " differs" : " differ"));
    if (notCompared > 0)
        add(countText(notCompared, "file") + " could not be compared");
    return text;
}

nlohmann::json toJson(const CopyReport& report)
{
    const CopyResult& result = report.result;
    nlohmann::json copied = nlohmann::json::array();
    nlohmann::json failed = nlohmann::json::array();
    for (std::size_t i = 0; i < result.files.size(); ++i)
        (result.files[i].isCopied ? copied : failed).push_back(fileJson(report, i));
    return {{"copied", copied},
            {"failed", failed},
            {"unmatched", unmatchedWords(report.selection)},
            {"stopped", result.isStopped},
            {"stopConfirmed", result.isStopConfirmed},
            {"notBegun", result.filesNotBegun}};
}

}  // namespace nivor
