#include "foundation/OperationQueue.h"

#include "foundation/SpinUntil.h"
#include "foundation/ThreadSignals.h"

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
        ++unfinished_;
        if (!thread_.joinable())
            thread_ = std::thread(&OperationQueue::run, this);
    }
    changed_.notify_all();
}

void OperationQueue::waitUntilAllOperationsAreFinished()
{
    const auto isIdle = [this] { return unfinished_ == 0; };
    if (spinUntil(isIdle))
        return;
    std::unique_lock guard(mutex_);
    changed_.wait(guard, isIdle);
}

void OperationQueue::run()
{
    leaveSignalsToMainThread();
    const auto hasWork = [this] { return ending_ || unfinished_ > 0; };
    for (;;) {
        // The next operation often follows at once.
        spinUntil(hasWork);
        std::unique_lock guard(mutex_);
        changed_.wait(guard, hasWork);
        if (waiting_.empty())
            return;
        {
            const std::function<void()> operation = std::move(waiting_.front());
            waiting_.pop_front();
            guard.unlock();
            operation();
        }
        guard.lock();
        --unfinished_;
        guard.unlock();
        changed_.notify_all();
    }
}

}  // namespace nivor
