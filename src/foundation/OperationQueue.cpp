#include "foundation/OperationQueue.h"

#include <utility>

namespace nivor {

OperationQueue::~OperationQueue()
{
    {
        const std::lock_guard guard(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void OperationQueue::addOperation(std::function<void()> operation)
{
    {
        const std::lock_guard guard(mutex_);
        waiting_.push_back(std::move(operation));
        if (!thread_.joinable())
            thread_ = std::thread(&OperationQueue::run, this);
    }
    changed_.notify_all();
}

void OperationQueue::waitUntilAllOperationsAreFinished()
{
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return waiting_.empty() && !running_; });
}

void OperationQueue::run()
{
    std::unique_lock guard(mutex_);
    for (;;) {
        changed_.wait(guard, [this] { return ending_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        {
            const std::function<void()> operation = std::move(waiting_.front());
            waiting_.pop_front();
            running_ = true;
            guard.unlock();
            operation();
        }
        guard.lock();
        running_ = false;
        changed_.notify_all();
    }
}

}  // namespace nivor
