/// Lets a copy or a deletion have the camera to itself while a listing is under way.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

namespace nivor {

/// The engine serves one operation after another, but in no fair order: a listing that asks again
/// at once would leave a copy waiting, and a stop could hit the listing's request instead of the
/// copy's.
class CameraPriority {
public:
    /// Holds the camera for one run. To be released on the thread that made it.
    class Claim {
    public:
        explicit Claim(CameraPriority& priority);
        ~Claim();

        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;

    private:
        CameraPriority& priority_;
    };

    CameraPriority() = default;
    CameraPriority(const CameraPriority&) = delete;
    CameraPriority& operator=(const CameraPriority&) = delete;

    /// Any thread.
    [[nodiscard]] bool isClaimed() const;

    /// Returns once nobody claims the camera, or soon after `givesUp` has become true.
    void waitWhileClaimed(const std::function<bool()>& givesUp);

private:
    mutable std::mutex mutex_;
    std::condition_variable released_;
    int claims_ = 0;
};

}  // namespace nivor
