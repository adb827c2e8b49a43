#include "foundation/OperationQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

namespace nivor::test {
namespace {

TEST(OperationQueue, RunsItsOperationsInOrder)
{
    std::vector<int> order;
    OperationQueue queue;
    for (int i = 0; i < 100; ++i)
        queue.addOperation([&order, i] { order.push_back(i); });
    queue.waitUntilAllOperationsAreFinished();

    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(OperationQueue, RunsThemOnOneThreadOfItsOwn)
{
    std::vector<std::thread::id> threads;
    OperationQueue queue;
    for (int i = 0; i < 3; ++i)
        queue.addOperation([&threads] { threads.push_back(std::this_thread::get_id()); });
    queue.waitUntilAllOperationsAreFinished();

    ASSERT_EQ(threads.size(), 3U);
    EXPECT_NE(threads[0], std::this_thread::get_id());
    EXPECT_THAT(threads, ::testing::Each(threads[0]));
}

TEST(OperationQueue, HasNothingToWaitForAtFirst)
{
    OperationQueue queue;
    queue.waitUntilAllOperationsAreFinished();
}

TEST(OperationQueue, WaitsForTheOperationThatRuns)
{
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<bool> ended{false};
    OperationQueue queue;
    queue.addOperation([&] {
        begun.set_value();
        mayEnd.get_future().wait();
        ended = true;
    });
    begun.get_future().wait();

    std::thread release([&] { mayEnd.set_value(); });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(ended);
    release.join();
}

TEST(OperationQueue, TakesOperationsAgainAfterAWait)
{
    int count = 0;
    OperationQueue queue;
    for (int i = 0; i < 3; ++i) {
        queue.addOperation([&count] { ++count; });
        queue.waitUntilAllOperationsAreFinished();
        EXPECT_EQ(count, i + 1);
    }
}

TEST(OperationQueue, FinishesEveryOperationBeforeItIsGone)
{
    int count = 0;
    {
        OperationQueue queue;
        for (int i = 0; i < 50; ++i)
            queue.addOperation([&count] { ++count; });
    }
    EXPECT_EQ(count, 50);
}

TEST(OperationQueue, MayBeAddedToByItsOwnOperations)
{
    int count = 0;
    OperationQueue queue;
    queue.addOperation([&] {
        ++count;
        queue.addOperation([&] { ++count; });
    });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(count, 2);
}

TEST(OperationQueue, LetsGoOfAnOperationOnceItHasRun)
{
    const auto shared = std::make_shared<int>(0);
    OperationQueue queue;
    queue.addOperation([shared] { ++*shared; });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(shared.use_count(), 1);
}

TEST(OperationQueue, MayBeAddedToByManyThreads)
{
    int count = 0;
    OperationQueue queue;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 250; ++i)
                queue.addOperation([&count] { ++count; });
            queue.waitUntilAllOperationsAreFinished();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(count, 1000);
}

}  // namespace
}  // namespace nivor::test
