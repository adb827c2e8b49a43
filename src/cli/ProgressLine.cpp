#include "cli/ProgressLine.h"

#include "cli/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace nivor {
namespace {

constexpr int usualWidth = 80;
constexpr int shortestName = 8;

// To the first column; from the cursor to the end of the line.
constexpr const char* toLineStart = "\r";
constexpr const char* eraseToEnd = "\x1b[K";

}  // namespace

ProgressLine::ProgressLine(CliEnvironment& environment)
    : environment_(environment)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

bool ProgressLine::isDue() const
{
    return environment_.isErrorTerminal
        && (!lastDrawn_ || environment_.now() - *lastDrawn_ >= shortestInterval);
}

void ProgressLine::show(const QString& name, const QString& details)
{
    if (isDue())
        showAtOnce(name, details);
}

void ProgressLine::showAtOnce(const QString& name, const QString& details)
{
    if (!environment_.isErrorTerminal)
        return;
    lastDrawn_ = environment_.now();
    isVisible_ = true;
    const int knownWidth = environment_.terminalWidth();
    // The last column stays free: some terminals wrap as soon as it is written.
    const int width = (knownWidth > 0 ? knownWidth : usualWidth) - 1;
    const QString tail = details.isEmpty() ? QString() : QStringLiteral("  ") + details;
    const QString head =
        fittedToColumns(name, std::max(shortestName, width - terminalColumns(tail)));
    const QString line = fittedToColumns(head + tail, width);
    environment_.err << toLineStart << line.toStdString() << eraseToEnd << std::flush;
}

void ProgressLine::clear()
{
    if (!isVisible_)
        return;
    isVisible_ = false;
    environment_.err << toLineStart << eraseToEnd << std::flush;
}

}  // namespace nivor
