/// The main queue of a program with an event loop.
#pragma once

#include "content/MainQueue.h"

#include <QTimer>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>

namespace nivor {

/// To be made and destroyed on the main thread, while there is an application object.
class EventLoopQueue final : public MainQueue {
public:
    EventLoopQueue();

    void runAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

private:
    using Clock = std::chrono::steady_clock;

    void rearm();
    void runWhatIsDue();

    std::mutex mutex_;
    std::multimap<Clock::time_point, std::function<void()>> waiting_;  ///< under the mutex

    /// Another thread has added something that the timer doesn't know of.
    std::atomic<bool> isChanged_{false};

    QTimer timer_;
};

}  // namespace nivor
