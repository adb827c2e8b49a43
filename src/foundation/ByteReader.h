/// Reads little-endian fields from untrusted bytes without ever leaving them.
#pragma once

#include "foundation/Bytes.h"

#include <cstddef>
#include <cstdint>

namespace nivor {

/// A cursor over a byte run whose failure is sticky: the first read past the end makes that read
/// and every later one answer 0 or nothing, and `ok()` false. So a parser may read all its fields
/// and ask once at the end. Not for use from several threads at a time.
class ByteReader {
public:
    explicit ByteReader(ByteView bytes, std::size_t offset = 0);

    std::uint8_t u8();
    std::uint16_t u16();
    std::uint32_t u32();
    std::uint64_t u64();

    /// The next `count` bytes, or an empty view when fewer are left.
    ByteView bytes(std::size_t count);

    void skip(std::size_t count) { static_cast<void>(bytes(count)); }

    /// Bytes not yet read; 0 after a failure. Hold every count from the wire against it.
    [[nodiscard]] std::size_t remaining() const { return ok_ ? bytes_.size() - offset_ : 0; }

    [[nodiscard]] std::size_t offset() const { return offset_; }
    [[nodiscard]] bool ok() const { return ok_; }

private:
    template <typename Integer> Integer littleEndian();

    ByteView bytes_;
    std::size_t offset_;
    bool ok_;
};

}  // namespace nivor
