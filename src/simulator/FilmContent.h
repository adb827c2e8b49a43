/// The bytes of a film that nobody shot.
#pragma once

#include "simulator/PatternContent.h"

#include <cstdint>
#include <span>

namespace nivor {

/// A QuickTime file type box, then one media data box that fills the rest with noise. Made on the
/// fly at any offset. Any thread.
class FilmContent {
public:
    /// `size` in bytes, from 64 to 2^32 - 1.
    FilmContent(std::uint64_t size, std::uint64_t seed);

    /// Fills `out` with the bytes from `offset` on.
    void fill(std::uint64_t offset, std::span<std::uint8_t> out) const;

private:
    std::uint64_t size_;
    PatternContent noise_;
};

}  // namespace nivor
