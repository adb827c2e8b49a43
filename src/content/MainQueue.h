/// Work for the main thread, now or later; the program's only way to tell time to itself.
#pragma once

#include <chrono>
#include <functional>

namespace nivor {

/// The program's own turns the event loop; a test's turns when the test says so.
class MainQueue {
public:
    MainQueue() = default;
    virtual ~MainQueue() = default;

    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    /// Runs `work` on the main thread once `delay` has passed, never before this returns. Work of
    /// the same time runs in the order in which it came. Any thread. What still waits when the
    /// queue is destroyed is never run.
    virtual void runAfter(std::chrono::milliseconds delay, std::function<void()> work) = 0;
};

}  // namespace nivor
