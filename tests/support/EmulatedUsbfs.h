/// The kernel's side of one USB device file, inside the test's own process.
#pragma once

#include "foundation/Bytes.h"
#include "support/MockedUsbDescription.h"
#include "support/MockedWire.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace nivor::test {

/// The setup packet of a control request (USB 2.0, 9.3).
struct MockedSetup {
    std::uint8_t bmRequestType;
    std::uint8_t bRequest;
    std::uint16_t wValue;
    std::uint16_t wIndex;
    std::uint16_t wLength;
};

/// Serves the ioctl() requests on the device file, which is a named pipe: libusb waits until it
/// can be written, so it is kept full as long as there is nothing to reap. Any thread.
class EmulatedUsbfs {
public:
    using BulkOut = std::function<void(ByteView)>;
    /// The reply's data stage, empty for a request with data to the device; none is a stall.
    using Control = std::function<std::optional<ByteBuffer>(const MockedSetup&, ByteView data)>;

    struct Counters {
        std::size_t bytesInFlight = 0;  ///< of requests submitted and not yet reaped
        std::size_t mostBytesInFlight = 0;
        std::size_t submissions = 0;
        std::size_t refusedForMemory = 0;
        std::size_t discards = 0;
        std::size_t clearedHalts = 0;
        std::map<int, int> claimed;       ///< interface number to alternate setting
        std::vector<int> configurations;  ///< as set, in order
    };

    EmulatedUsbfs(std::string pipePath, MockedUsbDescription description, double bytesPerSecond);
    ~EmulatedUsbfs();

    EmulatedUsbfs(const EmulatedUsbfs&) = delete;
    EmulatedUsbfs& operator=(const EmulatedUsbfs&) = delete;

    /// Answers one request: 0 or more, or a negative errno.
    int ioctl(unsigned long request, void* argument);

    void onBulkOut(BulkOut answer);
    void onControl(Control answer);
    void send(ByteBuffer bytes, WireEnd end);
    void sendForEver(ByteBuffer bytes, WireEnd end);
    void failIn(int error);
    void failInForEver(int error);

    /// Takes back what the device has not yet sent.
    void forgetIn();

    /// The next such request fails with that errno.
    void failNext(unsigned long request, int error);

    /// Bytes that may be in flight together; more is refused with ENOMEM.
    void setMemoryLimit(std::size_t bytes);

    /// The next `times` class requests of that code get no answer, not even a stall.
    void ignoreControl(std::uint8_t request, std::size_t times);

    /// While it holds, bytes written by the computer are not taken.
    void setTakesBulkOut(bool takes);

    /// The device leaves at the next such request, which is not served any more.
    void leaveAt(unsigned long request);

    /// The device leaves: what is in flight ends, every request after that gets ENODEV.
    void leave();

    [[nodiscard]] Counters counters() const;
    [[nodiscard]] std::size_t waitingForIn() const;
    [[nodiscard]] std::size_t unsentBytes() const;

private:
    struct Done {
        usbdevfs_urb* urb;
        int status;
    };

    int submit(usbdevfs_urb& urb);
    int discard(usbdevfs_urb& urb);
    int reap(usbdevfs_urb** urb);
    int takeOut(usbdevfs_urb& urb);
    int takeControl(usbdevfs_urb& urb);
    bool isIgnored(const usbdevfs_urb& urb);
    std::optional<ByteBuffer> standardReply(const MockedSetup& setup) const;
    int other(unsigned long request, void* argument);
    void completed(usbdevfs_urb* urb, int status);
    void showReapable(bool reapable);

    const MockedUsbDescription description_;
    const std::size_t packetSize_;
    int pipe_;
    mutable std::mutex mutex_;
    bool shownReapable_ = true;
    bool gone_ = false;
    bool takesBulkOut_ = true;
    std::size_t memoryLimit_ = 16 * 1024 * 1024;
    Counters counters_;
    std::map<unsigned long, std::deque<int>> failures_;
    std::optional<unsigned long> leavesAt_;
    std::deque<Done> done_;
    std::map<std::uint8_t, std::size_t> ignored_;
    std::deque<usbdevfs_urb*> stuck_;  // bulk-out and control requests the device does not take
    std::shared_ptr<BulkOut> bulkOut_;
    std::shared_ptr<Control> control_;
    std::unique_ptr<MockedWire> wire_;
};

}  // namespace nivor::test
