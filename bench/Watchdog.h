/// Notes the longest time in which the event loop has handled nothing.
#pragma once

#include <QTimer>

#include <algorithm>
#include <chrono>

namespace nivor::bench {

class Watchdog {
public:
    Watchdog()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(std::chrono::milliseconds(1));
    }

    void reset()
    {
        last_ = Clock::now();
        longest_ = 0;
    }

    /// In milliseconds, since the last reset.
    double longest()
    {
        beat();
        return longest_;
    }

private:
    using Clock = std::chrono::steady_clock;

    void beat()
    {
        const auto now = Clock::now();
        longest_ =
            std::max(longest_, std::chrono::duration<double, std::milli>(now - last_).count());
        last_ = now;
    }

    QTimer timer_;
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
};

}  // namespace nivor::bench
