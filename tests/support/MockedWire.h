/// The bulk-in pipe of a mocked device: packets on one side, the kernel's requests on the other.
#pragma once

#include "foundation/Bytes.h"

#include <linux/ioctl.h>
#include <linux/usbdevice_fs.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace nivor::test {

/// How the device ends what it sends.
enum class WireEnd {
    Marked,  ///< with a short packet, an empty one where the bytes fill whole packets
    Open,    ///< with a full packet where the bytes fill whole packets: more may follow
};

/// Moves bytes in whole packets into the waiting requests, at once or at a given pace. Not
/// guarded by itself: its owner calls everything under the lock it hands in, and is called back
/// under it.
class MockedWire {
public:
    using Completed = std::function<void(usbdevfs_urb*, int status)>;

    /// A pace of 0 bytes per second is as fast as memory.
    MockedWire(std::mutex& mutex, std::size_t maxPacketSize, double bytesPerSecond,
               Completed completed);
    ~MockedWire();

    MockedWire(const MockedWire&) = delete;
    MockedWire& operator=(const MockedWire&) = delete;

    void send(ByteBuffer bytes, WireEnd end);

    /// Sends the same again and again, once a microframe if there are requests for it, until
    /// `forget`.
    void sendForEver(ByteBuffer bytes, WireEnd end);

    /// The next request fails with that errno; EPIPE halts the endpoint until it is cleared.
    void fail(int error);

    /// Every request from then on fails so; with EPIPE, cleared halts come back.
    void failForEver(int error);

    /// Takes back what has not been sent.
    void forget();

    void submit(usbdevfs_urb* urb);

    /// Takes a waiting request back; false when it is not waiting.
    bool discard(usbdevfs_urb* urb);

    void clearHalt();

    /// Ends all requests with that status and forgets what was to be sent.
    void cut(int status);

    [[nodiscard]] std::size_t waitingCount() const { return waiting_.size(); }
    [[nodiscard]] std::size_t unsentBytes() const;

private:
    using Clock = std::chrono::steady_clock;

    struct Item {
        ByteBuffer bytes;
        std::size_t sent = 0;
        WireEnd end = WireEnd::Marked;
        int error = 0;
        Clock::time_point since;
        bool forEver = false;
    };
    struct Request {
        usbdevfs_urb* urb;
        Clock::time_point since;
    };

    [[nodiscard]] std::size_t nextChunk() const;
    void moveChunk(std::size_t size);
    void complete(int status);
    void moveAll();
    void run();
    [[nodiscard]] bool canMove() const;

    std::mutex& mutex_;
    const std::size_t maxPacketSize_;
    const double bytesPerSecond_;
    const Completed completed_;
    std::deque<Item> items_;
    std::deque<Request> waiting_;
    bool halted_ = false;
    Clock::time_point freeAt_;
    bool stop_ = false;
    std::condition_variable changed_;
    std::thread pacer_;  // only where there is a pace
};

}  // namespace nivor::test
