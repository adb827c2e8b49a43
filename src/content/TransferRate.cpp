#include "content/TransferRate.h"

#include <algorithm>
#include <cmath>

namespace nivor {
namespace {

using Seconds = std::chrono::duration<double>;

// The first lump only starts the clock. Two more, or one after a longer time, make a rate.
constexpr std::size_t enoughSamples = 3;
constexpr Seconds shortestSpan{0.5};
constexpr Seconds enoughSpan{1.5};

constexpr std::chrono::milliseconds sampleDistance{50};

// The engine hands on what has come after two seconds at the latest; only more than that is a
// camera that stalls.
constexpr Seconds usualSilence{2.5};

// Beyond this a time left is no news to anyone, and would not fit the counter.
constexpr double longestSeconds = 360'000;

}  // namespace

void TransferRate::record(TimePoint now, std::uint64_t bytes)
{
    now_ = now;
    const bool hasChanged = lastBytes_ && *lastBytes_ != bytes;
    lastBytes_ = bytes;
    if (!hasChanged)
        return;
    if (samples_.size() > 1 && now - samples_[samples_.size() - 2].time < sampleDistance)
        samples_.back() = {now, bytes};
    else
        samples_.push_back({now, bytes});
    while (samples_.size() > 2 && now - samples_.front().time > window)
        samples_.pop_front();
}

std::optional<double> TransferRate::bytesPerSecond() const
{
    if (samples_.size() < 2)
        return std::nullopt;
    const Seconds span = samples_.back().time - samples_.front().time;
    if (span < (samples_.size() < enoughSamples ? enoughSpan : shortestSpan))
        return std::nullopt;
    if (silence() > window)
        return 0;
    const Seconds stalled = std::max(silence() - usualSilence, Seconds::zero());
    return static_cast<double>(samples_.back().bytes - samples_.front().bytes)
        / (span + stalled).count();
}

std::optional<std::chrono::seconds> TransferRate::timeFor(std::uint64_t bytes) const
{
    const std::optional<double> rate = bytesPerSecond();
    if (!rate || *rate <= 0)
        return std::nullopt;
    // Part of the next lump is on its way already.
    const double underWay = std::min(silence(), usualSilence).count();
    const double seconds = std::ceil(static_cast<double>(bytes) / *rate - underWay);
    if (seconds > longestSeconds)
        return std::nullopt;
    return std::chrono::seconds(static_cast<std::int64_t>(std::max(seconds, 0.0)));
}

std::chrono::duration<double> TransferRate::silence() const
{
    return now_ - samples_.back().time;
}

}  // namespace nivor
