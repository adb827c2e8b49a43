/// Tells the options on a command line from their values and from all other words.
#pragma once

#include <string>
#include <vector>

namespace nivor {

/// One word of a command line.
struct CommandLineWord {
    enum class Kind {
        Option,
        Value,    ///< of the option before it
        EndMark,  ///< the "--" behind which nothing is an option
        Plain,
    };

    std::string text;
    Kind kind = Kind::Plain;
};

std::vector<CommandLineWord> classifiedWords(const std::vector<std::string>& arguments);

/// What is wrong with the options' values as such, in words: one is empty, or an option stands in
/// the place of one. Empty when nothing is.
std::string valueProblem(const std::vector<CommandLineWord>& words);

/// The first word that is neither an option nor a value, where the command belongs; empty when
/// there is none.
std::string commandWord(const std::vector<CommandLineWord>& words);

}  // namespace nivor
