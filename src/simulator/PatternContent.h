/// Bytes that can be computed at any offset, for objects too large to keep.
#pragma once

#include <cstdint>
#include <span>

namespace nivor {

/// An endless run of noise-like bytes: a pure function of seed and offset, so that any part of an
/// object can be made, and checked, without the rest. Runs of different seeds differ everywhere.
class PatternContent {
public:
    explicit PatternContent(std::uint64_t seed)
        : seed_(seed)
    {
    }

    /// Fills `out` with the bytes from `offset` on.
    void fill(std::uint64_t offset, std::span<std::uint8_t> out) const;

    [[nodiscard]] std::uint8_t at(std::uint64_t offset) const;

    /// Whether `bytes` are those from `offset` on.
    [[nodiscard]] bool matches(std::uint64_t offset, std::span<const std::uint8_t> bytes) const;

private:
    std::uint64_t seed_;
};

}  // namespace nivor
