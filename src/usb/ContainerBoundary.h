/// Finds the end of a container in a stream of bytes that need not show it.
///
/// Private to this layer.
#pragma once

#include "foundation/Bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace nivor {

/// A data phase ends with a short packet, an empty one where its length is a multiple of the packet
/// size (USB Still Image class 1.0, 7.2). Some devices leave that empty packet out, and then only
/// the length that the container announces in its first four bytes tells its end from the beginning
/// of the response. Containers of another length end with a
/// short packet anyway; for them no end is told, nor for those of unknown length (0xFFFFFFFF).
class ContainerBoundary {
public:
    explicit ContainerBoundary(std::size_t maxPacketSize)
        : maxPacketSize_(maxPacketSize)
    {
    }

    /// How many bytes may follow before `advance` has to be told of them.
    [[nodiscard]] std::size_t limit() const;

    /// These bytes, at most `limit` many, have followed.
    void advance(ByteView bytes);

    /// All of the container is there, and a short packet won't show it.
    [[nodiscard]] bool isReached() const { return remaining_ == 0U; }

    /// The next byte begins a container.
    void restart();

private:
    const std::size_t maxPacketSize_;
    std::array<std::uint8_t, 4> length_{};
    std::size_t lengthBytes_ = 0;
    std::optional<std::uint64_t> remaining_;
};

}  // namespace nivor
