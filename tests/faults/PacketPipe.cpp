#include "faults/PacketPipe.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace nivor::test {
namespace {

// What has no end has a pace all the same.
constexpr std::chrono::microseconds microframe{125};

}  // namespace

void PacketPipe::add(Item item)
{
    const std::lock_guard guard(mutex_);
    items_.push_back(std::move(item));
    changed_.notify_all();
}

void PacketPipe::send(ByteBuffer bytes, WireEnd end, bool forEver)
{
    if (!bytes.empty() || end == WireEnd::Marked)
        add({.bytes = std::move(bytes), .end = end, .forEver = forEver});
}

void PacketPipe::fail(UsbResult failure, bool forEver)
{
    add({.bytes = {}, .failure = failure, .forEver = forEver});
}

void PacketPipe::forget()
{
    const std::lock_guard guard(mutex_);
    items_.clear();
}

void PacketPipe::leave()
{
    const std::lock_guard guard(mutex_);
    gone_ = true;
    changed_.notify_all();
}

UsbResult PacketPipe::read(std::span<std::uint8_t> buffer, std::size_t& received,
                           const UsbTimeouts& timeouts)
{
    received = 0;
    std::unique_lock lock(mutex_);
    const auto lastEnd = std::chrono::steady_clock::now() + timeouts.completion;
    for (;;) {
        const auto deadline = std::min(lastEnd, std::chrono::steady_clock::now() + timeouts.noData);
        const bool inTime =
            changed_.wait_until(lock, deadline, [this] { return gone_ || !items_.empty(); });
        if (gone_)
            return UsbResult::NoDevice;
        if (!inTime)
            return received > 0 ? UsbResult::Success : UsbResult::TransactionTimeout;
        if (received > 0 && std::chrono::steady_clock::now() >= lastEnd)
            return UsbResult::Success;
        const UsbResult failure = items_.front().failure;
        if (!succeeded(failure)) {
            // Behind bytes of this read it is the next one's.
            if (received > 0)
                return UsbResult::Success;
            if (!items_.front().forEver)
                items_.pop_front();
            return failure;
        }
        const bool forEver = items_.front().forEver;
        const bool ended = moveFront(buffer, received);
        if (forEver) {
            lock.unlock();
            std::this_thread::sleep_for(microframe);
            lock.lock();
        }
        if (ended)
            return UsbResult::Success;
    }
}

// Moves what the front item has for the buffer; true when that ends the read.
bool PacketPipe::moveFront(std::span<std::uint8_t> buffer, std::size_t& received)
{
    Item& front = items_.front();
    const std::size_t count = std::min(front.bytes.size() - front.sent, buffer.size() - received);
    std::copy_n(front.bytes.begin() + static_cast<std::ptrdiff_t>(front.sent), count,
                buffer.begin() + static_cast<std::ptrdiff_t>(received));
    front.sent += count;
    received += count;
    const bool full = received == buffer.size();
    if (front.sent < front.bytes.size())
        return full;
    const bool isShort = front.end == WireEnd::Marked || front.bytes.size() % packetSize_ != 0;
    if (front.forEver)
        front.sent = 0;
    else
        items_.pop_front();
    return full || isShort;
}

}  // namespace nivor::test
