/// Prints what was measured: a line for each figure, with its spread and with what limits it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace nivor::bench {

/// What a figure is held against: the same work done with nothing of this program in between, what
/// the hardware can do, or what a user would still call prompt.
struct Limit {
    double value;      ///< in the figure's unit
    std::string name;  ///< a few words: "plain write", "60 Hz"

    /// How many times it the figure is, where the two were measured in pairs; absent: the ratio of
    /// the median to `value`.
    std::optional<double> times{};
};

/// One line of the table.
struct Figure {
    std::string name;
    std::string unit;
    std::vector<double> values;  ///< one for each repetition; must not be empty
    std::optional<Limit> limit{};
};

/// Begins a part of the table, with the column heads below its title.
void printTitle(const std::string& title);

/// Median, unit, smallest and largest value; the limit and how many times it the median is.
void print(const Figure& figure);

/// A remark on the lines above.
void printNote(const std::string& text);

}  // namespace nivor::bench
