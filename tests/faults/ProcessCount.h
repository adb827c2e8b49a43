/// What this process holds of the system: threads and open files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <ostream>

namespace nivor::test {

struct ProcessCount {
    std::size_t threads = count("/proc/self/task");
    std::size_t descriptors = count("/proc/self/fd");

    /// Less than before is no leak: umockdev's own thread takes its time to tidy up.
    [[nodiscard]] bool isWithin(const ProcessCount& before) const
    {
        return threads <= before.threads && descriptors <= before.descriptors;
    }

    friend std::ostream& operator<<(std::ostream& out, const ProcessCount& held)
    {
        return out << held.threads << " threads, " << held.descriptors << " descriptors";
    }

private:
    static std::size_t count(const char* directory)
    {
        // The directory itself is open meanwhile, each time.
        return static_cast<std::size_t>(std::distance(
            std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator()));
    }
};

}  // namespace nivor::test
