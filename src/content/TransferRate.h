/// How fast bytes come, and how long the rest will take.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace nivor {

/// Bytes come in lumps with silence between them, so it measures from lump to lump. Looks at the
/// last seconds only, so that it follows a camera that slows down.
class TransferRate {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::seconds window{5};

    /// Tells how many bytes there are in all by now. Neither value may fall. What has been told
    /// first is where the count begins.
    void record(TimePoint now, std::uint64_t bytes);

    /// As of the last record. Nothing until enough is known to say something that isn't a guess.
    [[nodiscard]] std::optional<double> bytesPerSecond() const;

    /// How long `bytes` more will take, as of the last record; nothing when that can't be told.
    [[nodiscard]] std::optional<std::chrono::seconds> timeFor(std::uint64_t bytes) const;

private:
    /// When the number of bytes has changed, and to what.
    struct Sample {
        TimePoint time;
        std::uint64_t bytes;
    };

    [[nodiscard]] std::chrono::duration<double> silence() const;

    std::deque<Sample> samples_;
    std::optional<std::uint64_t> lastBytes_;
    TimePoint now_{};
};

}  // namespace nivor
