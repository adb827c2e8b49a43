#include "support/MockedWire.h"

#include <algorithm>
#include <cerrno>
#include <sys/prctl.h>
#include <utility>

namespace nivor::test {

namespace {

// A paced wire moves at most so much at a time, which is how finely a slow device is seen to move.
constexpr std::size_t largestStep = 16 * 1024;

constexpr std::chrono::microseconds microframe{125};

}  // namespace

MockedWire::MockedWire(std::mutex& mutex, std::size_t maxPacketSize, double bytesPerSecond,
                       Completed completed)
    : mutex_(mutex)
    , maxPacketSize_(maxPacketSize)
    , bytesPerSecond_(bytesPerSecond)
    , completed_(std::move(completed))
{
    if (bytesPerSecond_ > 0)
        pacer_ = std::thread([this] { run(); });
}

MockedWire::~MockedWire()
{
    if (!pacer_.joinable())
        return;
    {
        const std::lock_guard guard(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    pacer_.join();
}

void MockedWire::send(ByteBuffer bytes, WireEnd end)
{
    if (bytes.empty() && end == WireEnd::Open)
        return;
    items_.push_back({std::move(bytes), 0, end, 0, Clock::now()});
    moveAll();
}

void MockedWire::sendForEver(ByteBuffer bytes, WireEnd end)
{
    items_.push_back({std::move(bytes), 0, end, 0, Clock::now(), true});
    moveAll();
}

void MockedWire::fail(int error)
{
    items_.push_back({{}, 0, WireEnd::Open, error, Clock::now()});
    moveAll();
}

void MockedWire::failForEver(int error)
{
    items_.push_back({{}, 0, WireEnd::Open, error, Clock::now(), true});
    moveAll();
}

void MockedWire::forget()
{
    items_.clear();
    changed_.notify_all();
}

void MockedWire::submit(usbdevfs_urb* urb)
{
    urb->actual_length = 0;
    waiting_.push_back({urb, Clock::now()});
    moveAll();
}

bool MockedWire::discard(usbdevfs_urb* urb)
{
    const auto found = std::ranges::find(waiting_, urb, &Request::urb);
    if (found == waiting_.end())
        return false;
    waiting_.erase(found);
    changed_.notify_all();
    completed_(urb, -ENOENT);
    return true;
}

void MockedWire::clearHalt()
{
    halted_ = false;
    moveAll();
}

void MockedWire::cut(int status)
{
    items_.clear();
    while (!waiting_.empty())
        complete(status);
    changed_.notify_all();
}

std::size_t MockedWire::unsentBytes() const
{
    std::size_t count = 0;
    for (const Item& item : items_)
        count += item.bytes.size() - item.sent;
    return count;
}

bool MockedWire::canMove() const
{
    return !waiting_.empty() && (halted_ || !items_.empty());
}

/// Bytes that the first item can send into the first request now; 0 for an empty packet, a
/// failure and a halted endpoint.
std::size_t MockedWire::nextChunk() const
{
    if (halted_)
        return 0;
    const Item& item = items_.front();
    const usbdevfs_urb& urb = *waiting_.front().urb;
    const auto room = static_cast<std::size_t>(urb.buffer_length - urb.actual_length);
    return std::min(item.bytes.size() - item.sent, room);
}

void MockedWire::moveChunk(std::size_t size)
{
    if (halted_)
        return complete(-EPIPE);
    Item& item = items_.front();
    usbdevfs_urb& urb = *waiting_.front().urb;
    if (item.error != 0) {
        const int error = item.error;
        halted_ = error == EPIPE;
        if (!item.forEver)
            items_.pop_front();
        return complete(-error);
    }
    std::copy_n(item.bytes.begin() + static_cast<std::ptrdiff_t>(item.sent), size,
                static_cast<std::uint8_t*>(urb.buffer) + urb.actual_length);
    urb.actual_length += static_cast<int>(size);
    item.sent += size;

    const bool full = urb.actual_length == urb.buffer_length;
    const bool wholePackets = item.bytes.size() % maxPacketSize_ == 0;
    if (item.sent < item.bytes.size()) {
        // A packet that does not fit is lost, and the request fails.
        const std::size_t intoPacket = item.sent % maxPacketSize_;
        if (full && intoPacket != 0) {
            item.sent = std::min(item.sent + maxPacketSize_ - intoPacket, item.bytes.size());
            return complete(-EOVERFLOW);
        }
        if (full)
            complete(0);
        return;
    }
    const bool emptyPacketFollows = wholePackets && item.end == WireEnd::Marked;
    if (item.forEver) {
        item.sent = 0;
        // A microframe goes by: what has no end has a pace all the same.
        std::this_thread::sleep_for(microframe);
        if (full || !wholePackets || emptyPacketFollows)
            complete(0);
        return;
    }
    if (emptyPacketFollows && full && size > 0) {
        // It ends the next request.
        item.bytes.clear();
        item.sent = 0;
        return complete(0);
    }
    const bool ended = !wholePackets || emptyPacketFollows;
    items_.pop_front();
    if (full || ended)
        complete(0);
}

void MockedWire::complete(int status)
{
    usbdevfs_urb* const urb = waiting_.front().urb;
    waiting_.pop_front();
    completed_(urb, status);
}

void MockedWire::moveAll()
{
    if (bytesPerSecond_ > 0) {
        changed_.notify_all();
        return;
    }
    while (canMove())
        moveChunk(nextChunk());
}

void MockedWire::run()
{
    // The default slack of 50 µs would be a tenth of a step.
    prctl(PR_SET_TIMERSLACK, 1);
    std::unique_lock lock(mutex_);
    while (!stop_) {
        if (!canMove()) {
            changed_.wait(lock);
            continue;
        }
        const std::size_t chunk = std::min(nextChunk(), largestStep);
        const auto since = halted_ ? freeAt_ : items_.front().since;
        const auto start = std::max({freeAt_, waiting_.front().since, since});
        const std::chrono::duration<double> lasts(static_cast<double>(chunk) / bytesPerSecond_);
        const auto end = start + std::chrono::duration_cast<Clock::duration>(lasts);
        usbdevfs_urb* const urb = waiting_.front().urb;
        const bool disturbed = changed_.wait_until(
            lock, end, [&] { return stop_ || waiting_.empty() || waiting_.front().urb != urb; });
        if (disturbed || !canMove())
            continue;
        freeAt_ = end;
        moveChunk(chunk);
    }
}

}  // namespace nivor::test
