#include "cli/CommandLineParser.h"

#include "cli/CommandLineWords.h"
#include "content/VendorID.h"
#include "content/VisibleName.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace nivor {
namespace {

constexpr std::string_view simulateWithFolder = "--simulate=";

const char* const programDescription =
    "Gets pictures and films off a USB camera, and deletes them there.";

const char* const programFooter = R"(
Options stand before or after the command.
Exit status: 0 done, 1 some file failed, 2 wrong usage, 3 no camera,
4 camera could not be opened, 5 stopped.)";

const char* const selectionFooter = R"(
A NAME without '/' is held against the names of files and folders, one with '/' against
their paths (DCIM/100NIVOR/IMG_0001.JPG). It may be a pattern: '*' stands for any
characters, '?' for one, [a-z] for one of a set, [!a-z] for one outside it, and a whole
path component ** for any folders. A handle, as the list shows it, does as well (decimal,
or 0x and hexadecimal). What is a name as it stands is taken for that name.
A folder stands for all the files in it, at any depth.
)";

const char* const copyFooter = R"(
Nothing is ever overwritten: where a name is taken, the file gets a number. All files go
directly into DEST, which is created if it is missing. Ctrl-C stops the copy; what has
been written stays. See nivor --help for the other options.)";

const char* const deleteFooter = R"(
Folders themselves are never deleted. Unless --yes is given, the terminal is asked first.
If one NAME matches nothing, nothing at all is deleted.
See nivor --help for the other options.)";

/// The parser would take a file called "list" for another command, and a pattern such as "[ab]"
/// for a list of values. So the words behind the command carry this mark on their way through it.
constexpr char literalMark = '\x01';

std::string unmarked(const std::string& word)
{
    return word.starts_with(literalMark) ? word.substr(1) : word;
}

/// The words as the parser gets them, last one first. An optional value can only be told from the
/// next word by its '=', so that form becomes an option of its own.
std::vector<std::string> reversedForParser(const std::vector<CommandLineWord>& arguments)
{
    using Kind = CommandLineWord::Kind;
    std::vector<std::string> words;
    bool isCommandSeen = false;
    for (const auto& [text, kind] : arguments) {
        if (kind == Kind::EndMark)
            continue;
        if (kind == Kind::Option && text.starts_with(simulateWithFolder))
            words.push_back("--simulate-folder=" + text.substr(simulateWithFolder.size()));
        else if (kind == Kind::Plain && isCommandSeen)
            words.push_back(literalMark + text);
        else
            words.push_back(text);
        isCommandSeen = isCommandSeen || kind == Kind::Plain;
    }
    std::reverse(words.begin(), words.end());
    return words;
}

bool isPace(const std::string& text)
{
    double pace = -1;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, pace);
    return error == std::errc() && rest == end && pace >= 0;
}

/// The command line's grammar, bound to the options it fills.
class Grammar {
public:
    explicit Grammar(CliOptions& options, const std::string& versionText)
        : options_(options)
    {
        app_.name("nivor");
        app_.description(programDescription);
        app_.footer(programFooter);
        app_.require_subcommand(1);
        app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
        app_.set_help_flag("-h,--help", "Show this help, and exit");
        app_.set_version_flag("--version", versionText, "Show the versions, and exit");
        addOptions();
        addCommands();
    }

    CLI::App& app() { return app_; }

    /// Carries over what needs words rather than flags. The problem in words, if any.
    std::string finish()
    {
        if (app_.count("--vendor-id") > 0)
            options_.vendorID = parseVendorID(vendorID_).value_or(anyVendorID);
        SimulationChoice& simulation = options_.simulation;
        const bool hasFolder = app_.count("--simulate-folder") > 0;
        if (simulation.isWritable && !hasFolder)
            return "--simulate-writable needs --simulate=FOLDER";
        if (options_.isVerify && options_.command != CliOptions::Command::Copy)
            return "--verify goes with the command copy only";
        simulation.isWanted = simulation.isWanted || hasFolder;
        for (const std::string& word : words_)
            options_.words.push_back(QString::fromStdString(unmarked(word)));
        options_.destination = unmarked(options_.destination);
        if (options_.command == CliOptions::Command::Copy && options_.destination.empty())
            return "DEST is empty";
        return {};
    }

private:
    void addOptions()
    {
        app_.add_option("--vendor-id", vendorID_, "Use only cameras of this USB vendor ID")
            ->type_name("0xNNNN")
            ->check([](const std::string& text) {
                return text.empty() || !parseVendorID(text)
                    ? "'" + text + "' is no vendor ID; write it like 0x1234, or any"
                    : std::string();
            });
        SimulationChoice& simulation = options_.simulation;
        app_.add_flag("--simulate", simulation.isWanted,
                      "Use a simulated camera: with a built-in card, or as\n"
                      "--simulate=FOLDER with the files of that folder");
        app_.add_option("--simulate-folder", simulation.folder)->group("");
        app_.add_flag("--simulate-writable", simulation.isWritable,
                      "Let deletions on the simulated camera reach FOLDER");
        app_.add_option("--simulate-pace", simulation.pace)
            ->check([](const std::string& text) {
                return isPace(text)
                    ? std::string()
                    : "'" + text + "' is no pace; write megabytes per second, like 20";
            })
            ->group("");
        app_.add_option("--log-directory", options_.logDirectory, "Keep the log in this folder")
            ->type_name("FOLDER");
        app_.add_flag("--json", options_.isJson, "Print the result as JSON");
        app_.add_flag("-y,--yes", options_.isYes, "Delete without asking");
        // Shown with its command, and accepted before it as well.
        app_.add_flag("--verify", options_.isVerify)->group("");
    }

    void addCommands()
    {
        using Command = CliOptions::Command;
        addCommand("devices", Command::Devices, "Show the cameras on the USB");
        addCommand("list", Command::List, "Show the files on the camera");

        CLI::App* copy = addCommand("copy", Command::Copy, "Copy files into a folder");
        copy->add_option("DEST", options_.destination, "The folder to copy to")
            ->type_name("")
            ->required();
        copy->add_flag("--verify", options_.isVerify,
                       "Then read it all once more and compare, byte for byte");
        addWords(*copy, "What to copy; every file when there is none");
        copy->footer(std::string(selectionFooter) + copyFooter);

        CLI::App* remove = addCommand("delete", Command::Delete, "Delete files on the camera");
        addWords(*remove, "What to delete")->required();
        remove->footer(std::string(selectionFooter) + deleteFooter);

        addCommand("doctor", Command::Doctor, "Show why a camera is not found or not opened");
    }

    CLI::App* addCommand(const char* name, CliOptions::Command command, const char* description)
    {
        CLI::App* subcommand = app_.add_subcommand(name, description);
        subcommand->fallthrough();
        subcommand->group("Commands");
        subcommand->footer("\nSee nivor --help for the options, such as --json and --simulate.");
        subcommand->callback([this, command] { options_.command = command; });
        return subcommand;
    }

    CLI::Option* addWords(CLI::App& command, const char* description)
    {
        return command.add_option("NAME", words_, description)->type_name("");
    }

    CliOptions& options_;
    CLI::App app_;
    std::string vendorID_;
    std::vector<std::string> words_;
};

/// The parser's own words for a missing command name neither what is there nor what was typed.
bool isAboutCommands(const CLI::ParseError& error)
{
    return error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
}

const char* const commandNames = "devices, list, copy, delete and doctor";

std::string commandProblem(const std::string& word)
{
    if (word.empty())
        return std::string("which command? There are ") + commandNames;
    return "'" + visibleName(QString::fromStdString(word)).toStdString()
        + "' is no command; there are " + commandNames;
}

ParsedCommandLine usageError(std::string message)
{
    std::erase(message, literalMark);
    return {.exitCode = ExitCode::Usage, .error = "nivor: " + message + "\nSee nivor --help.\n"};
}

}  // namespace

ParsedCommandLine parseCommandLine(const std::vector<std::string>& arguments,
                                   const std::string& versionText, std::int32_t defaultVendorID)
{
    const std::vector<CommandLineWord> words = classifiedWords(arguments);
    const std::string badValue = valueProblem(words);
    if (!badValue.empty())
        return usageError(badValue);

    CliOptions options;
    options.vendorID = defaultVendorID;
    Grammar grammar(options, versionText);
    try {
        grammar.app().parse(reversedForParser(words));
    } catch (const CLI::CallForHelp&) {
        return {.output = grammar.app().help()};
    } catch (const CLI::CallForVersion& version) {
        return {.output = std::string(version.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        if (grammar.app().get_subcommands().empty() && isAboutCommands(error))
            return usageError(commandProblem(commandWord(words)));
        return usageError(error.what());
    }
    const std::string problem = grammar.finish();
    if (!problem.empty())
        return usageError(problem);
    return {.options = std::move(options)};
}

}  // namespace nivor
