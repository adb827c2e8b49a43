#include "cli/CommandLineWords.h"

#include <algorithm>

namespace nivor {
namespace {

using Kind = CommandLineWord::Kind;

bool takesNextWord(const std::string& option)
{
    return option == "--vendor-id" || option == "--log-directory" || option == "--simulate-pace";
}

/// Whether the word is such an option with its '=' and nothing behind that.
bool isWithoutValue(const std::string& word)
{
    if (!word.ends_with('='))
        return false;
    const std::string option = word.substr(0, word.size() - 1);
    return takesNextWord(option) || option == "--simulate-folder";
}

}  // namespace

std::vector<CommandLineWord> classifiedWords(const std::vector<std::string>& arguments)
{
    std::vector<CommandLineWord> words;
    bool isLiteral = false;
    bool isValue = false;
    for (const std::string& text : arguments) {
        Kind kind = Kind::Plain;
        if (isValue)
            kind = Kind::Value;
        else if (!isLiteral && text == "--")
            kind = Kind::EndMark;
        else if (!isLiteral && text.size() > 1 && text.starts_with('-'))
            kind = Kind::Option;
        isLiteral = isLiteral || kind == Kind::EndMark;
        isValue = kind == Kind::Option && takesNextWord(text);
        words.push_back({text, kind});
    }
    return words;
}

std::string valueProblem(const std::vector<CommandLineWord>& words)
{
    std::string option;
    for (const auto& [text, kind] : words) {
        if (kind == Kind::Option && text == "--simulate=")
            return "--simulate= needs a folder; leave out the '=' for the built-in card";
        // The parser would take the next word for the value.
        if (kind == Kind::Option && isWithoutValue(text))
            return text + " needs a value";
        if (kind == Kind::Value && text.empty())
            return option + " needs a value";
        if (kind == Kind::Value && option == "--log-directory" && text.starts_with("--"))
            return "--log-directory needs a folder before " + text;
        option = text;
    }
    return {};
}

std::string commandWord(const std::vector<CommandLineWord>& words)
{
    const auto word =
        std::find_if(words.begin(), words.end(), [](const CommandLineWord& candidate) {
            return candidate.kind == Kind::Plain;
        });
    return word == words.end() ? std::string() : word->text;
}

}  // namespace nivor
