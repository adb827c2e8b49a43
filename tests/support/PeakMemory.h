/// How much resident memory a stretch of work added at its peak.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace nivor::test {

/// Counts from its construction on. Linux only: reads /proc.
class PeakMemory {
public:
    PeakMemory()
    {
        // 5 resets the kernel's record of the peak (proc(5), clear_refs).
        std::ofstream("/proc/self/clear_refs") << 5;
        idle_ = kibibytes("VmRSS:");
    }

    /// Peak above the start, in MiB.
    [[nodiscard]] double mebibytes() const
    {
        return (static_cast<double>(kibibytes("VmHWM:")) - static_cast<double>(idle_)) / 1024.0;
    }

private:
    static std::size_t kibibytes(const std::string& field)
    {
        std::ifstream status("/proc/self/status");
        std::string word;
        std::size_t value = 0;
        while (status >> word) {
            if (word == field) {
                status >> value;
                break;
            }
        }
        return value;
    }

    std::size_t idle_ = 0;
};

}  // namespace nivor::test
