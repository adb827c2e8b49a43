// The transfers of the emulated device file: submitting, answering and reaping them.
#include "support/EmulatedUsbfs.h"

#include "foundation/ByteReader.h"

#include <algorithm>
#include <cerrno>

namespace nivor::test {

namespace {

constexpr std::size_t setupSize = 8;

}  // namespace

int EmulatedUsbfs::submit(usbdevfs_urb& urb)
{
    {
        const std::lock_guard guard(mutex_);
        if (gone_)
            return -ENODEV;
        const bool bulkIn = urb.type != USBDEVFS_URB_TYPE_CONTROL && (urb.endpoint & 0x80) != 0;
        // The kernel takes no request for an endpoint whose packets hold nothing.
        if (bulkIn && packetSize_ == 0)
            return -EMSGSIZE;
        const auto size = static_cast<std::size_t>(urb.buffer_length);
        if (counters_.bytesInFlight + size > memoryLimit_) {
            ++counters_.refusedForMemory;
            return -ENOMEM;
        }
        ++counters_.submissions;
        counters_.bytesInFlight += size;
        counters_.mostBytesInFlight =
            std::max(counters_.mostBytesInFlight, counters_.bytesInFlight);
        if (bulkIn) {
            wire_->submit(&urb);
            return 0;
        }
        const bool isTaken =
            urb.type == USBDEVFS_URB_TYPE_CONTROL ? !isIgnored(urb) : takesBulkOut_;
        if (!isTaken) {
            stuck_.push_back(&urb);
            return 0;
        }
    }
    // The device's answers run without the lock, for they send.
    const int status = urb.type == USBDEVFS_URB_TYPE_CONTROL ? takeControl(urb) : takeOut(urb);
    const std::lock_guard guard(mutex_);
    completed(&urb, status);
    return 0;
}

/// Called under the lock.
bool EmulatedUsbfs::isIgnored(const usbdevfs_urb& urb)
{
    constexpr std::uint8_t typeBits = 0x60;
    constexpr std::uint8_t classType = 0x20;
    const auto* const setup = static_cast<const std::uint8_t*>(urb.buffer);
    const auto left = ignored_.find(setup[1]);
    if ((setup[0] & typeBits) != classType || left == ignored_.end() || left->second == 0)
        return false;
    --left->second;
    return true;
}

int EmulatedUsbfs::takeOut(usbdevfs_urb& urb)
{
    std::shared_ptr<BulkOut> answer;
    {
        const std::lock_guard guard(mutex_);
        answer = bulkOut_;
    }
    urb.actual_length = urb.buffer_length;
    if (answer && *answer)
        (*answer)({static_cast<const std::uint8_t*>(urb.buffer),
                   static_cast<std::size_t>(urb.buffer_length)});
    return 0;
}

int EmulatedUsbfs::takeControl(usbdevfs_urb& urb)
{
    auto* const bytes = static_cast<std::uint8_t*>(urb.buffer);
    ByteReader reader({bytes, setupSize});
    MockedSetup setup{};
    setup.bmRequestType = reader.u8();
    setup.bRequest = reader.u8();
    setup.wValue = reader.u16();
    setup.wIndex = reader.u16();
    setup.wLength = reader.u16();

    std::optional<ByteBuffer> reply = standardReply(setup);
    if (!reply) {
        std::shared_ptr<Control> answer;
        {
            const std::lock_guard guard(mutex_);
            answer = control_;
        }
        if (answer && *answer) {
            const bool in = (setup.bmRequestType & 0x80) != 0;
            const std::size_t sent = in ? 0U : setup.wLength;
            reply = (*answer)(setup, {bytes + setupSize, sent});
        }
    }
    urb.actual_length = 0;
    if (!reply)
        return -EPIPE;
    if ((setup.bmRequestType & 0x80) == 0) {
        urb.actual_length = setup.wLength;
        return 0;
    }
    const std::size_t count = std::min<std::size_t>(reply->size(), setup.wLength);
    std::copy_n(reply->begin(), count, bytes + setupSize);
    urb.actual_length = static_cast<int>(count);
    return 0;
}

std::optional<ByteBuffer> EmulatedUsbfs::standardReply(const MockedSetup& setup) const
{
    constexpr std::uint16_t stringType = 3 << 8;
    if (setup.bmRequestType != 0x80 || setup.bRequest != 6)
        return std::nullopt;
    if (setup.wValue == stringType)
        return ByteBuffer{4, 3, 0x09, 0x04};
    if (setup.wValue == (stringType | mockedSerialNumberIndex) && description_.serialNumber)
        return stringDescriptorOf(*description_.serialNumber);
    return std::nullopt;
}

int EmulatedUsbfs::discard(usbdevfs_urb& urb)
{
    const std::lock_guard guard(mutex_);
    if (gone_)
        return -ENODEV;
    ++counters_.discards;
    if (wire_->discard(&urb))
        return 0;
    if (std::erase(stuck_, &urb) == 0)
        return -EINVAL;
    completed(&urb, -ENOENT);
    return 0;
}

int EmulatedUsbfs::reap(usbdevfs_urb** urb)
{
    const std::lock_guard guard(mutex_);
    if (done_.empty())
        return gone_ ? -ENODEV : -EAGAIN;
    const Done done = done_.front();
    done_.pop_front();
    if (done_.empty())
        showReapable(false);
    counters_.bytesInFlight -= static_cast<std::size_t>(done.urb->buffer_length);
    done.urb->status = done.status;
    *urb = done.urb;
    return 0;
}

}  // namespace nivor::test
