/// A line of a terminal that is written over again and again.
#pragma once

#include "cli/CliEnvironment.h"

#include <QString>

#include <optional>

namespace nivor {

/// Writes to the environment's error stream, and only when that is a terminal; otherwise nothing
/// happens. Redrawn at most ten times a second, however often it is shown.
class ProgressLine {
public:
    static constexpr std::chrono::milliseconds shortestInterval{100};

    explicit ProgressLine(CliEnvironment& environment);

    /// Clears the line.
    ~ProgressLine();

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Whether what is shown now would be drawn.
    [[nodiscard]] bool isDue() const;

    /// Shows `name`, shortened to what the terminal's width leaves for it, and `details`.
    void show(const QString& name, const QString& details);

    /// Shows it even if the line has only just been drawn.
    void showAtOnce(const QString& name, const QString& details);

    /// Takes the line away, so that something else can be written in its place.
    void clear();

private:
    CliEnvironment& environment_;
    std::optional<std::chrono::steady_clock::time_point> lastDrawn_;
    bool isVisible_ = false;
};

}  // namespace nivor
