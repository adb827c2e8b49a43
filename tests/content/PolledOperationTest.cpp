#include "content/PolledOperation.h"

#include <gtest/gtest.h>

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

TEST(PolledOperation, AnOperationThatIsDoneAtOnceNeedsNoTurn)
{
    bool hasRun = false;
    const auto began = std::chrono::steady_clock::now();
    for (int i = 0; i < 50; ++i)
        runPolled([&hasRun] { hasRun = true; }, [] {});
    EXPECT_TRUE(hasRun);
    // Far less than a slice each, which would be half a second.
    EXPECT_LT(std::chrono::steady_clock::now() - began, 400ms);
}

TEST(PolledOperation, WhatIsRaisedReachesTheCaller)
{
    EXPECT_THROW(runPolled([] { throw std::runtime_error("no"); }, [] {}), std::runtime_error);
}

}  // namespace
