#include "app/EventLoopQueue.h"

#include <QAbstractEventDispatcher>
#include <QThread>

#include <algorithm>
#include <optional>
#include <utility>

namespace nivor {

EventLoopQueue::EventLoopQueue()
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { runWhatIsDue(); });
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                     &timer_, [this] {
                         if (isChanged_.exchange(false))
                             rearm();
                     });
}

void EventLoopQueue::runAfter(std::chrono::milliseconds delay, std::function<void()> work)
{
    {
        const std::lock_guard guard(mutex_);
        waiting_.emplace(Clock::now() + delay, std::move(work));
    }
    if (QThread::currentThread() == timer_.thread()) {
        rearm();
        return;
    }
    // Only the timer's own thread may touch it. Nothing else is handed to the event loop: what
    // passes between the threads is all under the mutex.
    isChanged_ = true;
    if (QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance(timer_.thread()))
        loop->wakeUp();
}

void EventLoopQueue::rearm()
{
    using std::chrono::milliseconds;
    std::optional<Clock::time_point> first;
    {
        const std::lock_guard guard(mutex_);
        if (!waiting_.empty())
            first = waiting_.begin()->first;
    }
    if (first)
        timer_.start(std::max(std::chrono::ceil<milliseconds>(*first - Clock::now()), {}));
}

void EventLoopQueue::runWhatIsDue()
{
    const Clock::time_point now = Clock::now();
    for (;;) {
        std::function<void()> work;
        {
            const std::lock_guard guard(mutex_);
            const auto first = waiting_.begin();
            if (first == waiting_.end() || first->first > now)
                break;
            work = std::move(first->second);
            waiting_.erase(first);
        }
        // Before the work, which may turn the event loop for a long time: what else is due runs
        // then.
        rearm();
        work();
    }
    rearm();
}

}  // namespace nivor
