#include "content/PolledOperation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>

using namespace nivor;
using namespace std::chrono_literals;

namespace {

TEST(PolledOperation, RunsOnAnotherThreadWhileTheCallerTurns)
{
    const auto caller = std::this_thread::get_id();
    std::thread::id worker;
    std::atomic<bool> isReleased{false};
    int turns = 0;
    runPolled(
        [&] {
            worker = std::this_thread::get_id();
            while (!isReleased)
                std::this_thread::sleep_for(1ms);
        },
        [&] {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            isReleased = ++turns == 3;
        });
    EXPECT_NE(worker, caller);
    EXPECT_GE(turns, 3);
}

TEST(PolledOperation, AnOperationThatIsDoneAtOnceWakesItsCaller)
{
    auto shortest = std::chrono::steady_clock::duration::max();
    int runs = 0;
    for (int i = 0; i < 50; ++i) {
        const auto began = std::chrono::steady_clock::now();
        runPolled([&runs] { ++runs; }, [] {});
        shortest = std::min(shortest, std::chrono::steady_clock::now() - began);
    }
    EXPECT_EQ(runs, 50);
    // A caller that only woke at the end of its slice would never be faster than that.
    EXPECT_LT(shortest, pollingSlice);
}

TEST(PolledOperation, WhatIsRaisedReachesTheCaller)
{
    EXPECT_THROW(runPolled([] { throw std::runtime_error("no"); }, [] {}), std::runtime_error);
}

}  // namespace
