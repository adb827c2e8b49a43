#include "content/CameraPriority.h"

#include <chrono>

namespace nivor {

CameraPriority::Claim::Claim(CameraPriority& priority)
    : priority_(priority)
{
    const std::lock_guard guard(priority_.mutex_);
    ++priority_.claims_;
}

CameraPriority::Claim::~Claim()
{
    {
        const std::lock_guard guard(priority_.mutex_);
        --priority_.claims_;
    }
    priority_.released_.notify_all();
}

bool CameraPriority::isClaimed() const
{
    const std::lock_guard guard(mutex_);
    return claims_ > 0;
}

void CameraPriority::waitWhileClaimed(const std::function<bool()>& givesUp)
{
    constexpr std::chrono::milliseconds step{20};
    std::unique_lock guard(mutex_);
    while (claims_ > 0 && !givesUp())
        released_.wait_for(guard, step);
}

}  // namespace nivor
