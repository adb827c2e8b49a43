#include "app/EventLoopQueue.h"

#include <QApplication>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

using namespace nivor;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

TEST(EventLoopQueue, RunsWorkInTheOrderOfItsTime)
{
    EventLoopQueue queue;
    QEventLoop loop;
    std::vector<int> order;
    queue.runAfter(30ms, [&] {
        order.push_back(3);
        loop.quit();
    });
    queue.runAfter(0ms, [&] { order.push_back(1); });
    queue.runAfter(5ms, [&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    loop.exec();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(EventLoopQueue, WorkOfTheSameTimeKeepsItsOrder)
{
    EventLoopQueue queue;
    QEventLoop loop;
    std::vector<int> order;
    for (int i = 0; i < 20; ++i)
        queue.runAfter(0ms, [&order, i] { order.push_back(i); });
    queue.runAfter(1ms, [&loop] { loop.quit(); });
    loop.exec();
    ASSERT_EQ(order.size(), 20U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(EventLoopQueue, WorkFromAnotherThreadRunsOnThisOne)
{
    EventLoopQueue queue;
    QEventLoop loop;
    std::thread::id ranOn;
    std::thread other([&] {
        // By now the loop may sleep; it is to be woken.
        std::this_thread::sleep_for(20ms);
        queue.runAfter(1ms, [&] {
            ranOn = std::this_thread::get_id();
            loop.quit();
        });
    });
    loop.exec();
    other.join();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(EventLoopQueue, WorkMayAddWorkAndTurnTheLoop)
{
    EventLoopQueue queue;
    QEventLoop loop;
    std::vector<std::string> order;
    queue.runAfter(0ms, [&] {
        queue.runAfter(0ms, [&] { order.emplace_back("inner"); });
        while (order.empty())
            QCoreApplication::processEvents();
        order.emplace_back("outer");
        loop.quit();
    });
    loop.exec();
    EXPECT_THAT(order, ElementsAre("inner", "outer"));
}

TEST(EventLoopQueue, WorkThatTurnsTheLoopDoesNotHoldUpWhatIsDueAsWell)
{
    EventLoopQueue queue;
    QEventLoop loop;
    std::vector<std::string> order;
    queue.runAfter(1ms, [&] {
        while (order.empty())
            QCoreApplication::processEvents();
        order.emplace_back("first");
        loop.quit();
    });
    queue.runAfter(2ms, [&] { order.emplace_back("second"); });
    // Both are due before the loop turns.
    std::this_thread::sleep_for(5ms);
    loop.exec();
    EXPECT_THAT(order, ElementsAre("second", "first"));
}

TEST(EventLoopQueue, WhatStillWaitsWhenItEndsIsNotRun)
{
    bool ran = false;
    {
        EventLoopQueue queue;
        queue.runAfter(0ms, [&ran] { ran = true; });
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

}  // namespace
