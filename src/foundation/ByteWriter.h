/// Appends little-endian fields to a byte buffer.
#pragma once

#include "foundation/Bytes.h"

#include <concepts>
#include <cstdint>

namespace nivor {

/// Appends the bytes of `value`, least significant first.
template <std::unsigned_integral Integer> void appendLittleEndian(ByteBuffer& buffer, Integer value)
{
    for (unsigned shift = 0; shift < 8 * sizeof(Integer); shift += 8)
        buffer.push_back(static_cast<std::uint8_t>(value >> shift));
}

/// Overwrites the bytes from `offset` on with `value`, least significant first.
/// The buffer must reach that far.
template <std::unsigned_integral Integer>
void putLittleEndian(std::span<std::uint8_t> buffer, std::size_t offset, Integer value)
{
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        buffer[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace nivor
