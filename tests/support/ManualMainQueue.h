/// A main queue whose time passes when a test says so.
#pragma once

#include "content/MainQueue.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace nivor::test {

/// Work may come from any thread; it runs on the one that lets the time pass.
class ManualMainQueue : public MainQueue {
public:
    void runAfter(std::chrono::milliseconds delay, std::function<void()> work) override
    {
        const std::lock_guard guard(mutex_);
        waiting_.push_back({now_ + delay, std::move(work)});
    }

    /// Lets that much time pass and runs what is due by then, in the order of its time.
    void advance(std::chrono::milliseconds time)
    {
        const auto end = now() + time;
        while (auto next = takeDue(end))
            next->work();
        const std::lock_guard guard(mutex_);
        now_ = end;
    }

    [[nodiscard]] std::size_t waiting() const
    {
        const std::lock_guard guard(mutex_);
        return waiting_.size();
    }

private:
    struct Entry {
        std::chrono::milliseconds due;
        std::function<void()> work;
    };

    std::chrono::milliseconds now() const
    {
        const std::lock_guard guard(mutex_);
        return now_;
    }

    std::optional<Entry> takeDue(std::chrono::milliseconds end)
    {
        const std::lock_guard guard(mutex_);
        const auto first =
            std::min_element(waiting_.begin(), waiting_.end(),
                             [](const Entry& a, const Entry& b) { return a.due < b.due; });
        if (first == waiting_.end() || first->due > end)
            return std::nullopt;
        Entry entry = std::move(*first);
        waiting_.erase(first);
        now_ = std::max(now_, entry.due);
        return entry;
    }

    mutable std::mutex mutex_;
    std::chrono::milliseconds now_{0};
    std::vector<Entry> waiting_;
};

}  // namespace nivor::test
