/// What a camera does in answer to one command, step by step.
#pragma once

#include "faults/Wire.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace nivor::test {

struct Step {
    enum class What : std::uint8_t { Send, SendForEver, Fail, StallForEver, Leave };

    What what = What::Send;
    ByteBuffer bytes{};
    WireEnd end = WireEnd::Marked;
    UsbResult failure = UsbResult::Success;

    /// How long the camera waits before it, in the engine's time.
    std::chrono::milliseconds after{0};
};

using Script = std::vector<Step>;

/// A container or a part of one that ends with a short or an empty packet.
inline Step sent(ByteBuffer bytes)
{
    return {.bytes = std::move(bytes)};
}

/// The same, but whole packets show no end.
inline Step sentOpen(ByteBuffer bytes)
{
    return {.bytes = std::move(bytes), .end = WireEnd::Open};
}

inline Step emptyPacket()
{
    return {};
}

inline Step sentForEver(ByteBuffer bytes, WireEnd end = WireEnd::Marked)
{
    return {.what = Step::What::SendForEver, .bytes = std::move(bytes), .end = end};
}

inline Step failure(UsbResult result)
{
    return {.what = Step::What::Fail, .failure = result};
}

inline Step stallForEver()
{
    return {.what = Step::What::StallForEver};
}

inline Step leaving()
{
    return {.what = Step::What::Leave};
}

inline Step later(std::chrono::milliseconds after, Step step)
{
    step.after = after;
    return step;
}

}  // namespace nivor::test
