/// The queued reader of a bulk-in pipe: transfers wait in the kernel before the data comes.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "usb/BulkInTransfer.h"
#include "usb/ContainerBoundary.h"
#include "usb/UsbResult.h"
#include "usb/UsbTimeouts.h"

#include <libusb.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace nivor {

/// A ring of transfers stays in flight from `start` to `stop`, so that the wire never waits for
/// the program; reads are served from finished transfers, in order and byte for byte. While the
/// reader is busy with what it has read, more transfers take the places of the finished ones.
///
/// What a read sees does not depend on the ring's shape, but for this: bytes arrive for it when
/// their transfer is full or has ended, so less than a transfer's worth may be on its way unseen.
/// - It ends when its buffer is full or where the device sent a short or an empty packet. Such an
///   end that coincides with the end of a full buffer belongs to that read. It ends as well where
///   a container ends that ought to be followed by an empty packet, whether or not one comes.
/// - A time-out takes nothing away: what is on its way is there for the next read.
/// - Bytes that came before a failure are served first, then the failure once. The ring then
///   starts anew with the next read, after clearing the endpoint's halt if there was a stall:
///   without that the kernel would answer every further transfer with the same stall.
/// - Once the device has left, every read ends at once with `NoDevice`.
///
/// Somebody has to handle the context's events meanwhile. One thread reads; the other operations
/// may be called from any thread.
class BulkInQueue final : private BulkInTransfer::Owner {
public:
    /// Number of transfers, one of which waits for the next write, and bytes of each.
    struct Shape {
        std::size_t depth;
        std::size_t transferSize;
    };

    /// The kernel lets all programs together hold 16 MiB; of that a ring is an eighth.
    static constexpr Shape usualShape{16, std::size_t{128} * 1024};
    static constexpr std::size_t smallestTransfer = std::size_t{16} * 1024;

    /// Bytes of all transfers that are submitted or wait for the reader; behind that the wire
    /// waits. Two programs that are both behind their disks leave the kernel a quarter of its
    /// memory.
    static constexpr std::size_t mostUnread = std::size_t{6} * 1024 * 1024;

    /// `gone` is the device's own flag, which the queue both sets and heeds. `most`: the ring's
    /// shape where the kernel has the memory, with transfers no smaller than the smallest.
    BulkInQueue(libusb_device_handle* handle, std::uint8_t endpoint, std::size_t maxPacketSize,
                std::shared_ptr<std::atomic<bool>> gone, Shape most = usualShape);

    /// Stops the ring if that has not been done.
    ~BulkInQueue();

    BulkInQueue(const BulkInQueue&) = delete;
    BulkInQueue& operator=(const BulkInQueue&) = delete;

    /// Fills the ring; when the kernel has not enough memory, with half as many or half as large
    /// transfers, until it fits. `NoMemory` when not even one smallest transfer does.
    UsbResult start();

    /// Ends all transfers and waits for them, at most a few seconds. A waiting read ends at once.
    void stop();

    /// See `UsbInterface::readPipe`.
    UsbResult read(std::span<std::uint8_t> buffer, std::size_t& received,
                   const UsbTimeouts& timeouts);

    /// From now on all that has come and comes is thrown away: the camera has confirmed that a
    /// transaction is cancelled, and a host that reads without queueing would never see the rest.
    /// Reads, the one under way included, end soon with what they have.
    void dropUntilWrite();

    /// To be called before each write: ends the dropping, throwing away what is there by now, in
    /// half-filled transfers too. Does nothing while nothing is being dropped.
    void endDropping();

    /// To be called after each write: submits the transfer that the ring has kept back for it.
    /// Emulated host controllers look at waiting transfers only when another one is submitted;
    /// without this the answer to a command could wait for ever.
    void writeEnded();

    /// Ends a waiting read at once; the caller has seen the device leave.
    void deviceLeft();

    /// The ring as it is, for tests and diagnosis.
    [[nodiscard]] Shape shape() const;

private:
    using Lock = std::unique_lock<std::mutex>;

    UsbResult fillRing(std::size_t transferSize);
    UsbResult submit(std::unique_ptr<BulkInTransfer> transfer);
    UsbResult submitIdle(std::size_t kept);
    UsbResult restart(Lock& lock);
    void halve();
    void addSpare();
    std::unique_ptr<BulkInTransfer> takeExtra();
    void readAhead(const BulkInTransfer& finished);
    void onFinished(BulkInTransfer& transfer) override;
    void onFailure(BulkInTransfer& transfer);
    void cancelNewestFirst();
    void cancelOldestFirst();
    bool waitUntilIdle(Lock& lock, std::chrono::milliseconds limit);
    std::optional<UsbResult> takeFinished(std::span<std::uint8_t> buffer, std::size_t& received);
    void copyFront(std::span<std::uint8_t> buffer, std::size_t& received);
    void retireFront();
    void dropFinished();
    void dropSurplus();

    libusb_device_handle* const handle_;
    const std::uint8_t endpoint_;
    const std::size_t maxPacketSize_;
    const std::shared_ptr<std::atomic<bool>> gone_;
    const Shape most_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    ContainerBoundary boundary_;
    std::vector<std::unique_ptr<BulkInTransfer>> line_;  // submitted, the oldest first
    std::vector<std::unique_ptr<BulkInTransfer>> idle_;
    std::vector<std::unique_ptr<BulkInTransfer>> extras_;  // for when the reader is busy
    std::size_t inFlight_ = 0;  // those of the line that have not finished
    std::size_t depth_ = 0;     // transfers that belong to the ring, idle ones included
    std::size_t transferSize_ = 0;
    bool stopped_ = true;
    bool failed_ = false;         // a transfer failed: the ring runs out, then starts anew
    bool stalled_ = false;        // the endpoint has to be cleared before that
    bool isMemoryShort_ = false;  // for reading ahead; until the next short packet
    bool paused_ = false;         // somebody is about to start it anew
    bool dropping_ = false;
    bool filledExactly_ = false;  // an empty packet may follow that belongs to the last read
};

}  // namespace nivor
