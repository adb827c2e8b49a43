#include "cli/Confirmation.h"

#include <algorithm>
#include <cctype>
#include <istream>
#include <ostream>
#include <string>

namespace nivor {

bool confirm(CliEnvironment& environment, std::string_view question)
{
    environment.err << question << " [y/N] " << std::flush;
    std::string answer;
    if (!std::getline(environment.in, answer)) {
        // The user's own line feed is missing.
        environment.err << '\n' << std::flush;
        return false;
    }
    std::transform(answer.begin(), answer.end(), answer.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const auto first = answer.find_first_not_of(" \t");
    const auto last = answer.find_last_not_of(" \t\r");
    if (first == std::string::npos)
        return false;
    const std::string word = answer.substr(first, last - first + 1);
    return word == "y" || word == "yes";
}

}  // namespace nivor
