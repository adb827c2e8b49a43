#include "StartedProgram.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nivor::bench {
namespace {

constexpr std::string_view painted = "Flushing";

}  // namespace

StartedProgram::StartedProgram(const std::filesystem::path& program,
                               const std::map<std::string, std::string>& environment)
{
    for (const auto& [name, value] : environment)
        ::setenv(name.c_str(), value.c_str(), 1);
    ::setenv("QT_LOGGING_RULES", "qt.widgets.painting.info=true", 1);

    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    diagnostics_ = ends[0];
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    std::string path = program.string();
    std::array<char*, 2> arguments{path.data(), nullptr};
    const auto began = Clock::now();
    const int error =
        ::posix_spawn(&process_, path.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    for (const auto& [name, value] : environment)
        ::unsetenv(name.c_str());
    if (error != 0)
        throw std::runtime_error("can't start " + path);
    waitForPaint(began);
}

StartedProgram::~StartedProgram()
{
    ::kill(process_, SIGTERM);
    // It may have more to say than the pipe holds.
    std::array<char, 4096> rest{};
    while (::read(diagnostics_, rest.data(), rest.size()) > 0) { }
    ::close(diagnostics_);
    ::waitpid(process_, nullptr, 0);
}

void StartedProgram::waitForPaint(Clock::time_point began)
{
    std::string said;
    std::array<char, 4096> part{};
    while (said.find(painted) == std::string::npos) {
        const ssize_t size = ::read(diagnostics_, part.data(), part.size());
        if (size <= 0)
            throw std::runtime_error("the program ended before it had painted: " + said);
        said.append(part.data(), static_cast<std::size_t>(size));
    }
    milliseconds_ = std::chrono::duration<double, std::milli>(Clock::now() - began).count();
}

std::set<std::filesystem::path> StartedProgram::mappedFiles() const
{
    std::set<std::filesystem::path> files;
    std::ifstream maps("/proc/" + std::to_string(process_) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        if (const auto path = line.find('/'); path != std::string::npos)
            files.insert(line.substr(path));
    }
    return files;
}

double StartedProgram::mebibytes(const std::string& field) const
{
    constexpr double kibibytes = 1024;
    std::ifstream rollup("/proc/" + std::to_string(process_) + "/smaps_rollup");
    for (std::string line; std::getline(rollup, line);) {
        std::istringstream words(line);
        std::string name;
        double value = 0;
        if (words >> name >> value && name == field)
            return value / kibibytes;
    }
    return 0;
}

}  // namespace nivor::bench
