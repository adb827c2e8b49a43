/// A card that lets a listing go on object by object.
#pragma once

#include "simulator/MemoryCard.h"

#include <condition_variable>
#include <mutex>

namespace nivor::test {

/// Open until `closeAfter` is called. The camera that reads it stands still at a closed gate.
class GatedCard : public MemoryCard {
public:
    ~GatedCard() override { open(); }

    /// Lets `objects` more be described; the next one has to wait.
    void closeAfter(int objects)
    {
        const std::lock_guard guard(mutex_);
        isOpen_ = false;
        passes_ = objects;
        isWaiting_ = false;
        changed_.notify_all();
    }

    void open()
    {
        const std::lock_guard guard(mutex_);
        isOpen_ = true;
        changed_.notify_all();
    }

    /// Returns once the listing stands at the gate.
    void waitUntilReached()
    {
        std::unique_lock guard(mutex_);
        changed_.wait(guard, [this] { return isWaiting_; });
    }

    std::optional<CardObject> details(std::uint32_t handle) override
    {
        {
            std::unique_lock guard(mutex_);
            if (!isOpen_ && passes_-- <= 0) {
                isWaiting_ = true;
                changed_.notify_all();
                changed_.wait(guard, [this] { return isOpen_ || passes_ > 0; });
                --passes_;
            }
        }
        return MemoryCard::details(handle);
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOpen_ = true;
    bool isWaiting_ = false;
    int passes_ = 0;
};

}  // namespace nivor::test
