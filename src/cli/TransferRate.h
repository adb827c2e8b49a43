/// How fast bytes come, and how long the rest will take.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace nivor {

/// Looks at the last seconds only, so that it follows a camera that slows down.
class TransferRate {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::seconds window{5};

    /// Tells how many bytes there are in all by now. Neither value may fall.
    void record(TimePoint now, std::uint64_t bytes);

    /// Nothing until enough is known to say something that isn't a guess.
    [[nodiscard]] std::optional<double> bytesPerSecond() const;

    /// How long `bytes` more will take; nothing when that can't be told.
    [[nodiscard]] std::optional<std::chrono::seconds> timeFor(std::uint64_t bytes) const;

private:
    struct Sample {
        TimePoint time;
        std::uint64_t bytes;
    };

    std::deque<Sample> samples_;
};

}  // namespace nivor
