#include "content/TransferRate.h"

#include <gtest/gtest.h>

using namespace nivor;
using namespace std::chrono_literals;

namespace {

TEST(TransferRate, IsSilentUntilItKnows)
{
    TransferRate rate;
    const TransferRate::TimePoint start{};
    EXPECT_FALSE(rate.bytesPerSecond());
    EXPECT_FALSE(rate.timeFor(1));
    rate.record(start, 0);
    rate.record(start + 100ms, 1'000'000);
    rate.record(start + 500ms, 5'000'000);
    EXPECT_FALSE(rate.bytesPerSecond());
    rate.record(start + 600ms, 6'000'000);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(0), 10e6);
    EXPECT_EQ(rate.timeFor(25'000'000), 3s);
}

TEST(TransferRate, LumpsMakeNeitherAnAbsurdRateNorASawtooth)
{
    constexpr std::uint64_t lump = 16 << 20;
    constexpr std::uint64_t total = 50 * lump;
    TransferRate rate;
    const TransferRate::TimePoint start{};
    rate.record(start, 0);
    std::optional<std::chrono::seconds> lastLeft;
    for (auto time = 0ms; time < 9s; time += 100ms) {
        const std::uint64_t bytes = 5108 + static_cast<std::uint64_t>(time / 2s) * lump;
        rate.record(start + time, bytes);
        const auto left = rate.timeFor(total - bytes);
        if (time < 2s) {
            EXPECT_FALSE(rate.bytesPerSecond());
            EXPECT_FALSE(left);
            continue;
        }
        EXPECT_NEAR(rate.bytesPerSecond().value_or(0), 8.4e6, 0.1e6);
        EXPECT_NEAR(static_cast<double>(left.value_or(0s).count()),
                    std::chrono::duration<double>(100s - time).count(), 2);
        // Between the lumps it is counted down by the clock.
        EXPECT_LE(left, lastLeft.value_or(100s));
        lastLeft = left;
    }
}

TEST(TransferRate, ASteadyStreamOfSmallPiecesGivesItsRate)
{
    TransferRate rate;
    for (int i = 0; i < 1000; ++i)
        rate.record(TransferRate::TimePoint{} + i * 10ms, static_cast<std::uint64_t>(i) * 60'000);
    EXPECT_NEAR(rate.bytesPerSecond().value_or(0), 6e6, 0.1e6);
    EXPECT_EQ(rate.timeFor(59'000'000), 10s);
}

TEST(TransferRate, FallsWhileTheCameraStalls)
{
    TransferRate rate;
    const TransferRate::TimePoint start{};
    for (int i = 0; i < 40; ++i)
        rate.record(start + i * 100ms, static_cast<std::uint64_t>(i) * 1'000'000);
    const TransferRate::TimePoint last = start + 3900ms;
    double before = rate.bytesPerSecond().value_or(0);
    std::chrono::seconds leftBefore{};
    for (const auto silence : {3000ms, 4000ms, 5000ms}) {
        rate.record(last + silence, 39'000'000);
        EXPECT_LT(rate.bytesPerSecond().value_or(-1), before);
        before = rate.bytesPerSecond().value_or(-1);
        const auto left = rate.timeFor(100'000'000).value_or(0s);
        EXPECT_GT(left, leftBefore);
        leftBefore = left;
    }
    rate.record(last + 6s, 39'000'000);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(-1), 0);
}

TEST(TransferRate, LooksAtTheLastSecondsOnly)
{
    TransferRate rate;
    TransferRate::TimePoint now{};
    std::uint64_t bytes = 0;
    for (int i = 0; i < 100; ++i, now += 100ms, bytes += 1'000'000)
        rate.record(now, bytes);
    for (int i = 0; i < 70; ++i, now += 100ms)
        rate.record(now, bytes);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(-1), 0);
    EXPECT_FALSE(rate.timeFor(1));
}

TEST(TransferRate, AHopelessRateHasNoTime)
{
    TransferRate rate;
    rate.record(TransferRate::TimePoint{}, 0);
    rate.record(TransferRate::TimePoint{} + 1s, 1);
    rate.record(TransferRate::TimePoint{} + 3s, 2);
    EXPECT_TRUE(rate.bytesPerSecond());
    EXPECT_FALSE(rate.timeFor(UINT64_MAX));
}

}  // namespace
