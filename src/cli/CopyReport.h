/// Tells what became of a copy, in words and as JSON.
#pragma once

#include "content/CopyComparisonResult.h"
#include "content/CopyResult.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <optional>
#include <string>

namespace nivor {

class ObjectPaths;
struct ObjectSelection;

struct CopyReport {
    const ObjectSelection& selection;
    const ObjectPaths& paths;
    CopyResult result{};
    std::chrono::duration<double> took{};

    std::size_t notCopied = 0;  ///< files that failed before anything was compared
    std::optional<CopyComparisonResult> comparison{};  ///< none when nothing was compared
};

/// What was copied, to where and how fast.
std::string copiedText(const CopyReport& report, const std::string& destination);

/// How the comparison of `copied` files came out.
std::string comparedText(const CopyComparisonResult& comparison, std::size_t copied);

/// What the stop has left behind.
std::string stopText(const CopyReport& report);

/// How many files failed in which way.
std::string failureText(const CopyReport& report);

nlohmann::json toJson(const CopyReport& report);

}  // namespace nivor
