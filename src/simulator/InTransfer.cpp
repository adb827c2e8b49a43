#include "simulator/InTransfer.h"

#include <algorithm>

namespace nivor {

namespace {

/// Copies what of `part`, which starts at `partOffset`, lies in the run that `out` stands for.
void copyOverlap(ByteView part, std::uint64_t partOffset, std::uint64_t offset,
                 std::span<std::uint8_t> out)
{
    const std::uint64_t begin = std::max(offset, partOffset);
    const std::uint64_t end = std::min(offset + out.size(), partOffset + part.size());
    if (begin < end) {
        const ByteView source = part.subspan(begin - partOffset, end - begin);
        std::copy(source.begin(), source.end(),
                  out.begin() + static_cast<std::ptrdiff_t>(begin - offset));
    }
}

}  // namespace

std::uint64_t InTransfer::size() const
{
    const std::uint64_t whole = head.size() + bodySize + tail.size();
    return std::min(whole, limit.value_or(whole));
}

bool InTransfer::produce(std::uint64_t offset, std::span<std::uint8_t> out) const
{
    copyOverlap(head, 0, offset, out);
    copyOverlap(tail, head.size() + bodySize, offset, out);

    const std::uint64_t begin = std::max<std::uint64_t>(offset, head.size());
    const std::uint64_t end = std::min(offset + out.size(), head.size() + bodySize);
    return begin >= end || body(begin - head.size(), out.subspan(begin - offset, end - begin));
}

}  // namespace nivor
