/// Decodes a fuzzer's input into choices.
#pragma once

#include "foundation/ByteReader.h"
#include "foundation/Bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace nivor::fuzz {

/// Takes choices from the front of the input; all that is asked of its end is 0 or nothing.
class FuzzedInput {
public:
    explicit FuzzedInput(ByteView bytes)
        : reader_(bytes)
    {
    }

    std::uint8_t u8() { return reader_.u8(); }
    std::uint16_t u16() { return reader_.u16(); }
    std::uint32_t u32() { return reader_.u32(); }
    std::uint64_t u64() { return reader_.u64(); }

    /// A number from 0 to `count` - 1.
    std::size_t choice(std::size_t count) { return u8() % count; }

    /// The next `count` bytes, or as many as are left.
    ByteView bytes(std::size_t count)
    {
        return reader_.bytes(std::min(count, reader_.remaining()));
    }

    /// A run of bytes whose length, up to 255, the input says itself.
    ByteView run() { return bytes(u8()); }

    ByteView rest() { return reader_.bytes(reader_.remaining()); }

    [[nodiscard]] bool isOver() const { return reader_.remaining() == 0; }

private:
    ByteReader reader_;
};

}  // namespace nivor::fuzz
