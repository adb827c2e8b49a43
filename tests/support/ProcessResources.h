/// What a process holds, to see that all of it is given back.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <system_error>
#include <thread>

namespace nivor::test {

/// A snapshot. Linux only: reads /proc.
struct ProcessResources {
    std::size_t descriptors = 0;
    std::size_t threads = 0;

    static ProcessResources now()
    {
        // The listing itself has one open, each time.
        const auto descriptors =
            std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
        return {.descriptors = static_cast<std::size_t>(descriptors), .threads = ownThreads()};
    }

    /// Whether the process comes down to this again; a thread that has been joined may be seen for
    /// a moment longer.
    [[nodiscard]] bool areAllThatIsHeld() const
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        for (;;) {
            const ProcessResources held = now();
            if (held.descriptors <= descriptors && held.threads <= threads)
                return true;
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    friend std::ostream& operator<<(std::ostream& out, const ProcessResources& held)
    {
        return out << held.descriptors << " descriptors and " << held.threads << " threads";
    }

private:
    /// Those that have the program's name: libraries name theirs, and some come and go.
    static std::size_t ownThreads()
    {
        const std::string own = lineOf("/proc/self/comm");
        std::size_t count = 0;
        std::error_code error;
        for (std::filesystem::directory_iterator task("/proc/self/task", error), end;
             !error && task != end; task.increment(error))
            count += lineOf(task->path() / "comm") == own ? 1U : 0U;
        return count;
    }

    static std::string lineOf(const std::filesystem::path& path)
    {
        std::ifstream file(path);
        std::string line;
        std::getline(file, line);
        return line;
    }
};

}  // namespace nivor::test
