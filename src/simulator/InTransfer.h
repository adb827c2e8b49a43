/// One transfer that a simulated camera has ready on its bulk-in pipe.
#pragma once

#include "foundation/Bytes.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace nivor {

/// Its bytes are `head`, then `bodySize` bytes that `body` makes, then `tail`, cut off at `limit`.
struct InTransfer {
    /// Fills `out` with the body's bytes from `offset` on; false when they can't be had.
    using Body = std::function<bool(std::uint64_t offset, std::span<std::uint8_t> out)>;

    std::uint32_t transactionID = 0;  ///< of the command that it answers
    ByteBuffer head{};
    Body body{};
    std::uint64_t bodySize = 0;
    ByteBuffer tail{};
    std::optional<std::uint64_t> limit{};

    /// Whether an empty packet ends a transfer of whole packets (USB 2.0, 5.8.3).
    bool zeroPacket = true;

    /// Not a transfer but a halted pipe: for one read, or for good.
    enum class Halt : std::uint8_t { No, Once, Forever };
    Halt halt = Halt::No;

    std::chrono::steady_clock::time_point readyAt{};  ///< nothing of it moves before
    std::optional<std::uint64_t> vanishAfter{};       ///< the camera leaves after this many bytes

    /// What replaces the rest of the answer when `body` fails.
    ByteBuffer responseOnFailure{};

    [[nodiscard]] std::uint64_t size() const;

    /// Makes the bytes from `offset` on, which must lie within `size()`. No lock is needed.
    [[nodiscard]] bool produce(std::uint64_t offset, std::span<std::uint8_t> out) const;
};

}  // namespace nivor
