/// Test bytes in a heap block of exactly their size.
#pragma once

#include "foundation/Bytes.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace nivor::test {

/// A copy of some bytes without a byte to spare behind them, so that AddressSanitizer reports any
/// read past the end.
class HeapBytes {
public:
    explicit HeapBytes(ByteView bytes)
        : size_(bytes.size())
        , block_(std::make_unique<std::uint8_t[]>(size_))
    {
        std::copy(bytes.begin(), bytes.end(), block_.get());
    }

    [[nodiscard]] ByteView view() const { return {block_.get(), size_}; }

private:
    std::size_t size_;
    std::unique_ptr<std::uint8_t[]> block_;
};

}  // namespace nivor::test
