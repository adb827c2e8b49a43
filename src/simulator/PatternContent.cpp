#include "simulator/PatternContent.h"

#include "foundation/ByteWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace nivor {

namespace {

constexpr std::uint64_t wordSize = sizeof(std::uint64_t);

/// The word at `index`: the finaliser of SplitMix64, a bijection that leaves no visible pattern.
std::uint64_t word(std::uint64_t seed, std::uint64_t index)
{
    std::uint64_t z = (index + 1) * 0x9E3779B97F4A7C15 + seed * 0xD1342543DE82EF95;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

std::uint64_t wordAsStored(std::uint64_t seed, std::uint64_t index)
{
    std::array<std::uint8_t, wordSize> bytes{};
    putLittleEndian(std::span<std::uint8_t>(bytes), 0, word(seed, index));
    return std::bit_cast<std::uint64_t>(bytes);
}

}  // namespace

void PatternContent::fill(std::uint64_t offset, std::span<std::uint8_t> out) const
{
    while (!out.empty() && offset % wordSize != 0) {
        out.front() = at(offset++);
        out = out.subspan(1);
    }
    std::uint64_t index = offset / wordSize;
    for (; out.size() >= wordSize; out = out.subspan(wordSize)) {
        const std::uint64_t bytes = wordAsStored(seed_, index++);
        std::memcpy(out.data(), &bytes, wordSize);
    }
    offset = index * wordSize;
    for (std::uint8_t& byte : out)
        byte = at(offset++);
}

std::uint8_t PatternContent::at(std::uint64_t offset) const
{
    return static_cast<std::uint8_t>(word(seed_, offset / wordSize) >> (8 * (offset % wordSize)));
}

bool PatternContent::matches(std::uint64_t offset, std::span<const std::uint8_t> bytes) const
{
    std::array<std::uint8_t, 4096> expected{};
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), expected.size());
        fill(offset, std::span(expected).first(count));
        if (!std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count),
                        expected.begin()))
            return false;
        offset += count;
        bytes = bytes.subspan(count);
    }
    return true;
}

}  // namespace nivor
