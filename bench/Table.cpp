#include "Table.h"

#include "Measuring.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace nivor::bench {
namespace {

// Three digits that mean something, and no more; all of them before the point.
std::string number(double value)
{
    const double size = std::abs(value);
    const int decimals = size >= 100 || size == 0 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3;
    return fmt::format("{:.{}f}", value, decimals);
}

void printLine(const std::string& line)
{
    std::puts(line.c_str());
    // What takes long is followed as it comes, through a pipe too.
    std::fflush(stdout);
}

}  // namespace

void printTitle(const std::string& title)
{
    printLine(fmt::format("\n{:<52} {:>9} {:<9} {:>20}  {:>9} {:>6}  {}", title, "median", "unit",
                          "least to most", "limit", "times", "what limits it"));
}

void print(const Figure& figure)
{
    const auto [least, most] = std::minmax_element(figure.values.begin(), figure.values.end());
    const double middle = median(figure.values);
    const std::string spread = figure.values.size() > 1
        ? fmt::format("{} to {}", number(*least), number(*most))
        : std::string("once");
    std::string line =
        fmt::format("{:<52} {:>9} {:<9} {:>20}", figure.name, number(middle), figure.unit, spread);
    if (figure.limit) {
        line += fmt::format("  {:>9} {:>6.2f}  {}", number(figure.limit->value),
                            figure.limit->times.value_or(middle / figure.limit->value),
                            figure.limit->name);
    }
    printLine(line);
}

void printNote(const std::string& text)
{
    printLine("    " + text);
}

}  // namespace nivor::bench
