/// A stop that comes from another thread while a copy is at work.
#pragma once

#include "content/CopyRunObserver.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace nivor::soak {

class RandomStop : public CopyRunObserver {
public:
    /// Stops the copy after `delay`, unless it is over by then. For another thread.
    void requestAfter(std::chrono::milliseconds delay)
    {
        std::unique_lock guard(mutex_);
        if (!ended_.wait_for(guard, delay, [this] { return hasEnded_; }))
            isRequested_ = true;
    }

    bool isStopRequested() override { return isRequested_; }

    void copyDidEnd() override
    {
        const std::lock_guard guard(mutex_);
        hasEnded_ = true;
        ended_.notify_all();
    }

private:
    std::atomic<bool> isRequested_{false};
    std::mutex mutex_;
    std::condition_variable ended_;
    bool hasEnded_ = false;
};

}  // namespace nivor::soak
