/// A property whose every read and write is whole, whichever thread it comes from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

namespace nivor {

/// The locks behind all `AtomicProperty` values. Many properties share one, so that a property
/// costs no memory beyond its value; no code runs and no other lock is taken while one is held.
class PropertyLocks {
public:
    static std::mutex& lockFor(const void* property)
    {
        // Properties lie at least 8 bytes apart; the upper bits spread neighbouring objects.
        const auto address = reinterpret_cast<std::uintptr_t>(property);
        return locks_[((address >> 3) ^ (address >> 9)) % locks_.size()];
    }

private:
    static inline std::array<std::mutex, 64> locks_;
};

/// A value with an individually atomic getter and setter, for types that `std::atomic` can't hold
/// (texts, dates, references). Two accesses in a row are two accesses: nothing else is guarded.
template <typename Value> class AtomicProperty {
public:
    AtomicProperty() = default;
    explicit AtomicProperty(Value value)
        : value_(std::move(value))
    {
    }

    AtomicProperty(const AtomicProperty&) = delete;
    AtomicProperty& operator=(const AtomicProperty&) = delete;

    [[nodiscard]] Value get() const
    {
        const std::lock_guard guard(PropertyLocks::lockFor(this));
        return value_;
    }

    void set(Value value)
    {
        // Swapped, so that the old value is destroyed after the lock is free again.
        const std::lock_guard guard(PropertyLocks::lockFor(this));
        std::swap(value_, value);
    }

private:
    Value value_{};
};

}  // namespace nivor
