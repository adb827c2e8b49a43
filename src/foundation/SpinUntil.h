/// Waiting for a moment without sleeping.
#pragma once

#include <chrono>
#include <thread>

namespace nivor {

/// How long a thread looks again and again before it goes to sleep. To wake it takes about as long,
/// and many times that where processors fall asleep with their threads.
inline constexpr std::chrono::microseconds spinTime{50};

/// On a single processor it only takes time from whoever is waited for.
inline bool isSpinningWorthwhile()
{
    static const bool isWorthwhile = std::thread::hardware_concurrency() != 1;
    return isWorthwhile;
}

/// Asks `isMet` until it is true or the time is over; answers what it said last. Lets other threads
/// run in between. `isMet` must be safe to call while another thread makes it true.
template <typename Condition> bool spinUntil(Condition&& isMet)
{
    if (!isSpinningWorthwhile())
        return isMet();
    const auto end = std::chrono::steady_clock::now() + spinTime;
    while (!isMet()) {
        if (std::chrono::steady_clock::now() >= end)
            return isMet();
        std::this_thread::yield();
    }
    return true;
}

}  // namespace nivor
