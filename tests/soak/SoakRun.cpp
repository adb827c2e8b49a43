#include "soak/SoakRun.h"

#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "support/TemporaryDirectory.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace nivor::soak {
namespace {

using Clock = std::chrono::steady_clock;

// A time-out of 5 s is over in half a second.
constexpr unsigned pace = 10;

constexpr std::size_t parts = 10;

// What a program at rest holds more at one moment than at another: a free list that a thread keeps,
// a log's path, a hash table's reserve. The least of several looks is free of most of it.
constexpr std::int64_t heapNoise = std::int64_t{32} * 1024;

// Behind the end of a run, more would only bury the first.
constexpr std::uint64_t mostComplaints = 40;

std::int64_t leastHeap(std::span<const ProcessFigures> figures)
{
    return std::min_element(figures.begin(), figures.end(),
                            [](const auto& a, const auto& b) { return a.liveHeap < b.liveHeap; })
        ->liveHeap;
}

}  // namespace

struct SoakRun::Worker {
    std::optional<std::uint64_t> cycle{};  // under way
    Clock::time_point began{};
};

SoakRun::SoakRun(const SoakOptions& options)
    : options_(options)
{
}

SoakRun::~SoakRun() = default;

bool SoakRun::run()
{
    if (options_.only) {
        next_ = *options_.only;
        limit_ = next_ + 1;
        isOver_ = true;
        Worker alone;
        work(alone);
        return complaints_ == 0;
    }

    fmt::print("seed {}, {} threads\n", options_.seed, options_.threads);
    fmt::print("{:>8} {:>8} {:>8} {:>12} {:>10} {:>12} {:>8}\n", "cycles", "copies", "stops",
               "heap (byte)", "RSS (KiB)", "descriptors", "threads");
    workers_.resize(options_.threads);
    std::vector<std::jthread> threads;
    for (Worker& worker : workers_)
        threads.emplace_back([this, &worker] { work(worker); });
    for (std::size_t part = 1; part <= parts; ++part) {
        runUntil(options_.cycles * part / parts);
        printFigures();
    }
    {
        const std::lock_guard guard(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    threads.clear();
    const bool isSteady = !hasGrown();
    return complaints_ == 0 && isSteady;
}

/// One engine's working life.
void SoakRun::work(Worker& worker)
{
    const test::TemporaryDirectory folder;
    const test::TemporaryDirectory logFolder;
    RollingLogger logger;
    logger.setLogBaseName("Soak");
    logger.setSaveDirectory(logFolder.path());
    const auto host = std::make_shared<SimulatedHost>();
    PTPCommunication engine({.host = host, .logger = &logger, .agentPause = {}, .pace = pace});
    Workplace workplace{engine, logger, *host, folder.path()};

    std::uint64_t first = 0;
    std::uint64_t end = 0;
    while (takeGroup(first, end)) {
        for (std::uint64_t number = first; number < end; ++number)
            runCycle(worker, workplace, number);
        const std::lock_guard guard(mutex_);
        --groupsUnderWay_;
        changed_.notify_all();
    }
}

void SoakRun::runCycle(Worker& worker, Workplace& workplace, std::uint64_t number)
{
    {
        const std::lock_guard guard(mutex_);
        worker.cycle = number;
        worker.began = Clock::now();
    }
    SoakCycle cycle(workplace, options_.seed, number);
    const std::vector<std::string> complaints = cycle.run();

    const std::lock_guard guard(mutex_);
    worker.cycle.reset();
    copied_ += cycle.filesCopied();
    stopped_ += cycle.wasStopped() ? 1U : 0U;
    for (const std::string& complaint : complaints) {
        if (++complaints_ <= mostComplaints)
            fmt::print("seed {} cycle {}: {}\n", options_.seed, number, complaint);
    }
    std::fflush(stdout);
}

/// Waits for the next group; false when there is none any more.
bool SoakRun::takeGroup(std::uint64_t& first, std::uint64_t& end)
{
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return next_ < limit_ || isOver_; });
    if (next_ >= limit_)
        return false;
    first = next_;
    end = std::min(limit_, first + groupSize);
    next_ = end;
    ++groupsUnderWay_;
    return true;
}

/// Lets the workers go on until so many cycles are done in all, and waits until they stand still.
void SoakRun::runUntil(std::uint64_t cycles)
{
    std::unique_lock guard(mutex_);
    limit_ = cycles;
    changed_.notify_all();
    const auto isDone = [this] { return next_ >= limit_ && groupsUnderWay_ == 0; };
    while (!changed_.wait_for(guard, std::chrono::seconds(1), isDone)) {
        for (const Worker& worker : workers_) {
            if (!worker.cycle || Clock::now() - worker.began < longestCycle)
                continue;
            // Nothing can be tidied while it hangs; a core file shows where.
            fmt::print("seed {} cycle {}: does not end\n", options_.seed, *worker.cycle);
            std::fflush(stdout);
            std::abort();
        }
    }
}

void SoakRun::printFigures()
{
    const ProcessFigures now = ProcessFigures::now();
    figures_.push_back(now);
    fmt::print("{:>8} {:>8} {:>8} {:>12} {:>10} {:>12} {:>8}\n", next_, copied_, stopped_,
               now.liveHeap, now.residentSize, now.descriptors, now.threads);
    std::fflush(stdout);
}

/// Whether anything has grown since the second look. The first tenth warms up.
bool SoakRun::hasGrown() const
{
    constexpr std::size_t settled = 1;
    constexpr std::size_t window = 4;
    const std::span all(figures_);
    const std::int64_t grown =
        leastHeap(all.last(window)) - leastHeap(all.subspan(settled, window));
    fmt::print("heap: {:+} bytes from the least of 20..50 % to the least of 70..100 %; "
               "{} is the bound\n",
               grown, heapNoise);

    const ProcessFigures& base = figures_.at(settled);
    const bool holdsMore = std::any_of(all.begin() + settled, all.end(), [&](const auto& later) {
        return later.descriptors > base.descriptors || later.threads > base.threads;
    });
    if (holdsMore)
        fmt::print("descriptors or threads have grown\n");
    return grown > heapNoise || holdsMore;
}

}  // namespace nivor::soak
