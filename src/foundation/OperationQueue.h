/// A worker thread of its own that runs the operations added to it, in order.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace nivor {

/// Starts its thread with the first operation. Destroying the queue waits for all operations.
/// Operations must not throw. Any thread may add and wait, except that an operation must not
/// wait for its own queue.
class OperationQueue {
public:
    OperationQueue() = default;
    ~OperationQueue();

    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    void addOperation(std::function<void()> operation);

    /// Returns once every operation added so far has returned.
    void waitUntilAllOperationsAreFinished();

private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    // Both change under the mutex only; they are atomic to be looked at without it.
    std::atomic<std::size_t> unfinished_{0};  ///< operations waiting or running
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

}  // namespace nivor
