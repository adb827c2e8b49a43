#include "usb/ContainerBoundary.h"

#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace nivor {

std::size_t ContainerBoundary::limit() const
{
    if (lengthBytes_ < length_.size())
        return length_.size() - lengthBytes_;
    return remaining_ ? static_cast<std::size_t>(*remaining_)
                      : std::numeric_limits<std::size_t>::max();
}

void ContainerBoundary::advance(ByteView bytes)
{
    assert(bytes.size() <= limit());
    if (lengthBytes_ == length_.size()) {
        if (remaining_)
            *remaining_ -= bytes.size();
        return;
    }
    std::copy(bytes.begin(), bytes.end(),
              length_.begin() + static_cast<std::ptrdiff_t>(lengthBytes_));
    lengthBytes_ += bytes.size();
    if (lengthBytes_ < length_.size())
        return;
    ByteReader reader(length_);
    const std::uint32_t length = reader.u32();
    if (length >= containerHeaderSize && length != containerLengthUnknown
        && length % maxPacketSize_ == 0)
        remaining_ = length - length_.size();
}

void ContainerBoundary::restart()
{
    lengthBytes_ = 0;
    remaining_.reset();
}

}  // namespace nivor
