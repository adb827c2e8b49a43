#include "content/PolledWorker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>

using namespace nivor;
using namespace std::chrono_literals;

namespace {

TEST(PolledWorker, RunsOnAnotherThreadWhileTheCallerTurns)
{
    const auto caller = std::this_thread::get_id();
    std::thread::id worker;
    std::atomic<bool> isReleased{false};
    int turns = 0;
    PolledWorker polled;
    polled.run(
        [&] {
            worker = std::this_thread::get_id();
            while (!isReleased)
                std::this_thread::sleep_for(1ms);
        },
        [&] {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            isReleased = ++turns >= 3;
        });
    EXPECT_NE(worker, caller);
    EXPECT_GE(turns, 3);
}

TEST(PolledWorker, AnOperationThatIsDoneAtOnceWakesItsCaller)
{
    auto shortest = std::chrono::steady_clock::duration::max();
    int runs = 0;
    PolledWorker polled;
    for (int i = 0; i < 50; ++i) {
        const auto began = std::chrono::steady_clock::now();
        polled.run([&runs] { ++runs; }, [] {});
        shortest = std::min(shortest, std::chrono::steady_clock::now() - began);
    }
    EXPECT_EQ(runs, 50);
    // A caller that only woke at the end of its slice would never be faster than that.
    EXPECT_LT(shortest, pollingSlice);
}

TEST(PolledWorker, WhatIsRaisedReachesTheCaller)
{
    PolledWorker polled;
    EXPECT_THROW(polled.run([] { throw std::runtime_error("no"); }, [] {}), std::runtime_error);
    bool ran = false;
    polled.run([&ran] { ran = true; }, [] {});
    EXPECT_TRUE(ran);
}

TEST(PolledWorker, WhatTheCallerRaisesWaitsForTheOperation)
{
    PolledWorker polled;
    std::atomic<bool> isDone{false};
    EXPECT_THROW(polled.run(
                     [&isDone] {
                         std::this_thread::sleep_for(3 * pollingSlice);
                         isDone = true;
                     },
                     [] { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_TRUE(isDone);
}

TEST(PolledWorker, OperationsThatAreSoonOverDontKeepTheCallerFromItsTurns)
{
    PolledWorker polled;
    int turns = 0;
    // Again where the machine has let the time pass.
    for (int attempt = 0; attempt < 10 && turns < 3; ++attempt) {
        turns = 0;
        const auto end = std::chrono::steady_clock::now() + 20 * pollingSlice;
        while (std::chrono::steady_clock::now() < end)
            polled.run([] { std::this_thread::sleep_for(1ms); }, [&turns] { ++turns; });
    }
    EXPECT_GE(turns, 3);
}

}  // namespace
