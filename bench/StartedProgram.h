/// The real program in a process of its own, from its start to its first paint.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include <sys/types.h>

namespace nivor::bench {

/// The toolkit says in its own diagnostics when it hands a painted window to the screen; they are
/// switched on by the environment, so the program itself is the one that users have.
class StartedProgram {
public:
    using Clock = std::chrono::steady_clock;

    /// `environment` is added to the own one. Throws `std::runtime_error` when the program ends
    /// without having painted anything.
    StartedProgram(const std::filesystem::path& program,
                   const std::map<std::string, std::string>& environment);

    /// Asks the program to end, and waits for that.
    ~StartedProgram();

    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    [[nodiscard]] double millisecondsToFirstPaint() const { return milliseconds_; }

    /// The files that it has mapped by now.
    [[nodiscard]] std::set<std::filesystem::path> mappedFiles() const;

    /// A line of the kernel's account of its memory, such as "Pss:", in MiB.
    [[nodiscard]] double mebibytes(const std::string& field) const;

private:
    void waitForPaint(Clock::time_point began);

    pid_t process_ = -1;
    int diagnostics_ = -1;
    double milliseconds_ = 0;
};

}  // namespace nivor::bench
