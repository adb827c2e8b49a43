/// Random choices that the same seed makes again.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace nivor::soak {

/// The choices of one cycle. Not for use from several threads at a time.
class Random {
public:
    /// The choices depend on both numbers, so each cycle has its own whichever thread runs it.
    Random(std::uint64_t seed, std::uint64_t cycle)
        : bits_((seed + 1) * 0x9E3779B97F4A7C15U ^ (cycle + 1) * 0xBF58476D1CE4E5B9U)
    {
    }

    /// From 0 to `end` - 1; `end` must not be 0. The bias of the remainder is of no matter here.
    std::uint64_t below(std::uint64_t end) { return bits_() % end; }

    /// From `first` to `last`.
    std::uint64_t between(std::uint64_t first, std::uint64_t last)
    {
        return first + below(last - first + 1);
    }

    bool chance(unsigned percent) { return below(100) < percent; }

    template <typename Value, std::size_t count>
    const Value& oneOf(const std::array<Value, count>& values)
    {
        return values[below(count)];
    }

private:
    std::mt19937_64 bits_;
};

}  // namespace nivor::soak
