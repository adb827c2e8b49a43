#include "content/PolledWorker.h"

#include <utility>

namespace nivor {

void PolledWorker::run(const std::function<void()>& operation, const std::function<void()>& turn)
{
    {
        const std::lock_guard guard(mutex_);
        isFinished_ = false;
    }
    queue_.addOperation([this, &operation] {
        std::exception_ptr raised;
        try {
            operation();
        } catch (...) {
            raised = std::current_exception();
        }
        finish(std::move(raised));
    });

    std::unique_lock guard(mutex_);
    while (!finished_.wait_until(guard, nextTurn_, [this] { return isFinished_; })) {
        guard.unlock();
        turnNow(turn);
        guard.lock();
    }
    if (const std::exception_ptr error = std::exchange(error_, nullptr))
        std::rethrow_exception(error);
}

/// On the worker.
void PolledWorker::finish(std::exception_ptr error)
{
    {
        const std::lock_guard guard(mutex_);
        error_ = std::move(error);
        isFinished_ = true;
    }
    finished_.notify_all();
}

void PolledWorker::turnNow(const std::function<void()>& turn)
{
    // An error of the caller's own must not leave the worker behind with what it works on.
    try {
        turn();
    } catch (...) {
        queue_.waitUntilAllOperationsAreFinished();
        throw;
    }
    nextTurn_ = Clock::now() + pollingSlice;
}

}  // namespace nivor
