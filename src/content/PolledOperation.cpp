#include "content/PolledOperation.h"

#include "foundation/OperationQueue.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <utility>

namespace nivor {

void runPolled(std::function<void()> operation, const std::function<void()>& turn)
{
    std::mutex mutex;
    std::condition_variable finished;
    bool isFinished = false;
    std::exception_ptr error;

    // Destroyed before what it uses, and its end is the worker's.
    OperationQueue queue;
    queue.addOperation([&, work = std::move(operation)] {
        std::exception_ptr raised;
        try {
            work();
        } catch (...) {
            raised = std::current_exception();
        }
        const std::lock_guard guard(mutex);
        error = std::move(raised);
        isFinished = true;
        finished.notify_all();
    });

    std::unique_lock guard(mutex);
    while (!finished.wait_for(guard, pollingSlice, [&isFinished] { return isFinished; })) {
        guard.unlock();
        turn();
        guard.lock();
    }
    if (error)
        std::rethrow_exception(error);
}

}  // namespace nivor
