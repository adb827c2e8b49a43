/// A bulk-in pipe in memory that keeps the seam's rules to the letter.
#pragma once

#include "support/MockedWire.h"
#include "usb/UsbResult.h"
#include "usb/UsbTimeouts.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <span>

namespace nivor::test {

/// What is sent on one side is read on the other in packets of a size. A read ends with a short or
/// an empty packet or when its buffer is full; the end of a container ends it only so. Any thread.
class PacketPipe {
public:
    explicit PacketPipe(std::size_t packetSize)
        : packetSize_(packetSize)
    {
    }

    void send(ByteBuffer bytes, WireEnd end, bool forEver);
    void fail(UsbResult failure, bool forEver);
    void forget();

    /// The device has left: every read ends at once with `NoDevice`.
    void leave();

    UsbResult read(std::span<std::uint8_t> buffer, std::size_t& received,
                   const UsbTimeouts& timeouts);

private:
    struct Item {
        ByteBuffer bytes;
        std::size_t sent = 0;
        WireEnd end = WireEnd::Marked;
        UsbResult failure = UsbResult::Success;
        bool forEver = false;
    };

    void add(Item item);
    bool moveFront(std::span<std::uint8_t> buffer, std::size_t& received);

    const std::size_t packetSize_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Item> items_;
    bool gone_ = false;
};

}  // namespace nivor::test
