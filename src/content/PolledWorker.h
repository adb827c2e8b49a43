/// Runs slow operations on a worker while the calling thread stays responsive.
#pragma once

#include "foundation/OperationQueue.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <future>
#include <mutex>

namespace nivor {

/// The longest time between two turns.
inline constexpr std::chrono::milliseconds pollingSlice{10};

/// Belongs to the thread that made it. One operation at a time.
class PolledWorker {
public:
    PolledWorker() = default;
    PolledWorker(const PolledWorker&) = delete;
    PolledWorker& operator=(const PolledWorker&) = delete;

    /// Runs `operation` on the worker thread and returns once it has ended; that wakes the caller
    /// at once. Until then `turn` is called on the calling thread whenever a slice is over, slices
    /// that earlier operations have begun included: operations that are each over soon don't keep
    /// the caller from its turns. What `operation` raises is raised here.
    void run(const std::function<void()>& operation, const std::function<void()>& turn);

    /// Waits for what another thread brings, with turns as above.
    template <typename Result>
    void waitFor(const std::future<Result>& result, const std::function<void()>& turn)
    {
        while (result.wait_until(nextTurn_) != std::future_status::ready)
            turnNow(turn);
    }

private:
    using Clock = std::chrono::steady_clock;

    void finish(std::exception_ptr error);
    void turnNow(const std::function<void()>& turn);

    std::mutex mutex_;
    std::condition_variable finished_;
    bool isFinished_ = false;     ///< under the mutex
    std::exception_ptr error_{};  ///< under the mutex

    Clock::time_point nextTurn_ = Clock::now() + pollingSlice;

    // Behind all that its operations work on.
    OperationQueue queue_;
};

}  // namespace nivor
