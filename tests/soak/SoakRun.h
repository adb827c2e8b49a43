/// Many cycles on several threads, with a look at the process in between.
#pragma once

#include "soak/ProcessFigures.h"
#include "soak/SoakCycle.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nivor::soak {

struct SoakOptions {
    std::uint64_t cycles = 2000;
    std::uint64_t seed = 1;
    unsigned threads = 8;
    std::optional<std::uint64_t> only{};  ///< this one cycle alone
};

/// Each thread has an engine of its own for the whole run. The process is looked at when all of
/// them stand still, after each tenth of the cycles.
class SoakRun {
public:
    /// No cycle takes longer. Its longest waits are time-outs of 0.25 s, one for each file.
    static constexpr std::chrono::seconds longestCycle{60};

    explicit SoakRun(const SoakOptions& options);
    ~SoakRun();

    SoakRun(const SoakRun&) = delete;
    SoakRun& operator=(const SoakRun&) = delete;

    /// Prints the figures as they come; false when anything was not as it should be.
    bool run();

private:
    /// Cycles that follow one another on the same engine.
    static constexpr std::uint64_t groupSize = 4;

    struct Worker;

    void work(Worker& worker);
    void runCycle(Worker& worker, Workplace& workplace, std::uint64_t number);
    bool takeGroup(std::uint64_t& first, std::uint64_t& end);
    void runUntil(std::uint64_t cycles);
    void printFigures();
    [[nodiscard]] bool hasGrown() const;

    const SoakOptions options_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t next_ = 0;   // the first cycle of the next group
    std::uint64_t limit_ = 0;  // groups from here on have to wait
    std::uint64_t groupsUnderWay_ = 0;
    bool isOver_ = false;
    std::uint64_t copied_ = 0;
    std::uint64_t stopped_ = 0;
    std::uint64_t complaints_ = 0;
    std::vector<Worker> workers_;

    std::vector<ProcessFigures> figures_;
};

}  // namespace nivor::soak
