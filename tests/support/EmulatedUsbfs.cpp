#include "support/EmulatedUsbfs.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace nivor::test {

namespace {

std::size_t bulkInPacketSize(const MockedUsbDescription& description)
{
    for (const MockedInterface& interface : description.interfaces) {
        for (const MockedEndpoint& endpoint : interface.endpoints) {
            // The upper bits count transactions per microframe.
            if (endpoint.attributes == 2 && (endpoint.address & 0x80) != 0)
                return endpoint.maxPacketSize & 0x7FF;
        }
    }
    return 512;
}

}  // namespace

EmulatedUsbfs::EmulatedUsbfs(std::string pipePath, MockedUsbDescription description,
                             double bytesPerSecond)
    : description_(std::move(description))
    , packetSize_(bulkInPacketSize(description_))
    , pipe_(::open(pipePath.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
{
    if (pipe_ < 0)
        throw std::system_error(errno, std::generic_category(), pipePath);
    // One page: a single byte fills it.
    ::fcntl(pipe_, F_SETPIPE_SZ, 4096);
    showReapable(false);
    wire_ = std::make_unique<MockedWire>(
        mutex_, std::max<std::size_t>(packetSize_, 1), bytesPerSecond,
        [this](usbdevfs_urb* urb, int status) { completed(urb, status); });
}

EmulatedUsbfs::~EmulatedUsbfs()
{
    wire_.reset();
    ::close(pipe_);
}

void EmulatedUsbfs::onBulkOut(BulkOut answer)
{
    const std::lock_guard guard(mutex_);
    bulkOut_ = std::make_shared<BulkOut>(std::move(answer));
}

void EmulatedUsbfs::onControl(Control answer)
{
    const std::lock_guard guard(mutex_);
    control_ = std::make_shared<Control>(std::move(answer));
}

void EmulatedUsbfs::send(ByteBuffer bytes, WireEnd end)
{
    const std::lock_guard guard(mutex_);
    if (!gone_)
        wire_->send(std::move(bytes), end);
}

void EmulatedUsbfs::sendForEver(ByteBuffer bytes, WireEnd end)
{
    const std::lock_guard guard(mutex_);
    if (!gone_)
        wire_->sendForEver(std::move(bytes), end);
}

void EmulatedUsbfs::failIn(int error)
{
    const std::lock_guard guard(mutex_);
    wire_->fail(error);
}

void EmulatedUsbfs::failInForEver(int error)
{
    const std::lock_guard guard(mutex_);
    wire_->failForEver(error);
}

void EmulatedUsbfs::forgetIn()
{
    const std::lock_guard guard(mutex_);
    wire_->forget();
}

void EmulatedUsbfs::failNext(unsigned long request, int error)
{
    const std::lock_guard guard(mutex_);
    failures_[request].push_back(error);
}

void EmulatedUsbfs::leaveAt(unsigned long request)
{
    const std::lock_guard guard(mutex_);
    leavesAt_ = request;
}

void EmulatedUsbfs::setMemoryLimit(std::size_t bytes)
{
    const std::lock_guard guard(mutex_);
    memoryLimit_ = bytes;
}

void EmulatedUsbfs::ignoreControl(std::uint8_t request, std::size_t times)
{
    const std::lock_guard guard(mutex_);
    ignored_[request] = times;
}

void EmulatedUsbfs::setTakesBulkOut(bool takes)
{
    const std::lock_guard guard(mutex_);
    takesBulkOut_ = takes;
}

void EmulatedUsbfs::leave()
{
    const std::lock_guard guard(mutex_);
    gone_ = true;
    wire_->cut(-ESHUTDOWN);
    for (usbdevfs_urb* urb : std::exchange(stuck_, {}))
        completed(urb, -ESHUTDOWN);
}

EmulatedUsbfs::Counters EmulatedUsbfs::counters() const
{
    const std::lock_guard guard(mutex_);
    return counters_;
}

std::size_t EmulatedUsbfs::waitingForIn() const
{
    const std::lock_guard guard(mutex_);
    return wire_->waitingCount();
}

std::size_t EmulatedUsbfs::unsentBytes() const
{
    const std::lock_guard guard(mutex_);
    return wire_->unsentBytes();
}

int EmulatedUsbfs::ioctl(unsigned long request, void* argument)
{
    bool leaves = false;
    {
        const std::lock_guard guard(mutex_);
        leaves = leavesAt_ == request;
        auto& failures = failures_[request];
        if (!failures.empty()) {
            const int error = failures.front();
            failures.pop_front();
            return -error;
        }
    }
    if (leaves)
        leave();
    switch (request) {
    case USBDEVFS_SUBMITURB:
        return submit(*static_cast<usbdevfs_urb*>(argument));
    case USBDEVFS_REAPURBNDELAY:
        return reap(static_cast<usbdevfs_urb**>(argument));
    case USBDEVFS_DISCARDURB:
        return discard(*static_cast<usbdevfs_urb*>(argument));
    default:
        return other(request, argument);
    }
}

int EmulatedUsbfs::other(unsigned long request, void* argument)
{
    const std::lock_guard guard(mutex_);
    if (gone_)
        return -ENODEV;
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES:
        *static_cast<std::uint32_t*>(argument) = USBDEVFS_CAP_ZERO_PACKET
            | USBDEVFS_CAP_NO_PACKET_SIZE_LIM | USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
        return 0;
    case USBDEVFS_CLAIMINTERFACE:
        counters_.claimed[*static_cast<int*>(argument)] = 0;
        return 0;
    case USBDEVFS_RELEASEINTERFACE:
        return counters_.claimed.erase(*static_cast<int*>(argument)) > 0 ? 0 : -EINVAL;
    case USBDEVFS_SETINTERFACE: {
        const auto& set = *static_cast<usbdevfs_setinterface*>(argument);
        counters_.claimed[static_cast<int>(set.interface)] = static_cast<int>(set.altsetting);
        return 0;
    }
    case USBDEVFS_SETCONFIGURATION:
        counters_.configurations.push_back(*static_cast<int*>(argument));
        return 0;
    case USBDEVFS_CLEAR_HALT:
        ++counters_.clearedHalts;
        wire_->clearHalt();
        return 0;
    case USBDEVFS_GETDRIVER:
    case USBDEVFS_IOCTL:
        return -ENODATA;
    default:
        return -ENOTTY;
    }
}

/// Called under the lock.
void EmulatedUsbfs::completed(usbdevfs_urb* urb, int status)
{
    done_.push_back({urb, status});
    showReapable(true);
}

void EmulatedUsbfs::showReapable(bool reapable)
{
    if (reapable == std::exchange(shownReapable_, reapable))
        return;
    char byte = 0;
    const auto moved = reapable ? ::read(pipe_, &byte, 1) : ::write(pipe_, &byte, 1);
    if (moved != 1)
        throw std::system_error(errno, std::generic_category(), "mocked device file");
}

}  // namespace nivor::test
