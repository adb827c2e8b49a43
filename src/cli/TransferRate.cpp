#include "cli/TransferRate.h"

#include <cmath>

namespace nivor {
namespace {

constexpr std::chrono::milliseconds shortestSpan{500};
constexpr std::chrono::milliseconds sampleDistance{50};

// Beyond this a time left is no news to anyone, and would not fit the counter.
constexpr double longestSeconds = 360'000;

}  // namespace

void TransferRate::record(TimePoint now, std::uint64_t bytes)
{
    if (samples_.size() > 1 && now - samples_[samples_.size() - 2].time < sampleDistance)
        samples_.back() = {now, bytes};
    else
        samples_.push_back({now, bytes});
    while (samples_.size() > 2 && now - samples_.front().time > window)
        samples_.pop_front();
}

std::optional<double> TransferRate::bytesPerSecond() const
{
    if (samples_.empty() || samples_.back().time - samples_.front().time < shortestSpan)
        return std::nullopt;
    const std::chrono::duration<double> span = samples_.back().time - samples_.front().time;
    return static_cast<double>(samples_.back().bytes - samples_.front().bytes) / span.count();
}

std::optional<std::chrono::seconds> TransferRate::timeFor(std::uint64_t bytes) const
{
    const std::optional<double> rate = bytesPerSecond();
    if (!rate || *rate <= 0)
        return std::nullopt;
    const double seconds = std::ceil(static_cast<double>(bytes) / *rate);
    if (seconds > longestSeconds)
        return std::nullopt;
    return std::chrono::seconds(static_cast<std::int64_t>(seconds));
}

}  // namespace nivor
