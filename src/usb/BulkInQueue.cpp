#include "usb/BulkInQueue.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <utility>

namespace nivor {

namespace {

using Clock = std::chrono::steady_clock;

// A cancelled transfer comes back within a millisecond; these bounds are for a broken kernel.
constexpr std::chrono::milliseconds stopLimit{5000};
constexpr std::chrono::milliseconds flushLimit{2000};

// While everything is dropped a read can bring nothing; this leaves its caller the time to find out
// that the transaction is over.
constexpr std::chrono::milliseconds droppedWait{20};

}  // namespace

BulkInQueue::BulkInQueue(libusb_device_handle* handle, std::uint8_t endpoint,
                         std::size_t maxPacketSize, std::shared_ptr<std::atomic<bool>> gone,
                         Shape most)
    : handle_(handle)
    , endpoint_(endpoint)
    , maxPacketSize_(std::clamp<std::size_t>(maxPacketSize, 1, smallestTransfer))
    , gone_(std::move(gone))
    , most_(most)
    , boundary_(maxPacketSize_)
{
}

BulkInQueue::~BulkInQueue()
{
    stop();
}

UsbResult BulkInQueue::start()
{
    const Lock lock(mutex_);
    assert(stopped_ && line_.empty());
    stopped_ = failed_ = stalled_ = paused_ = dropping_ = filledExactly_ = isMemoryShort_ = false;
    boundary_.restart();
    UsbResult result = UsbResult::NoMemory;
    for (std::size_t size = most_.transferSize; size >= smallestTransfer; size /= 2) {
        result = fillRing(size);
        if (result != UsbResult::NoMemory)
            break;
    }
    stopped_ = !succeeded(result);
    return result;
}

void BulkInQueue::stop()
{
    Lock lock(mutex_);
    stopped_ = true;
    cancelOldestFirst();
    changed_.notify_all();
    if (!waitUntilIdle(lock, stopLimit)) {
        // The kernel still owns their buffers: better lost than handed out again.
        for (auto& transfer : line_) {
            transfer->disown();
            static_cast<void>(transfer.release());
        }
    }
    line_.clear();
    idle_.clear();
    extras_.clear();
    inFlight_ = 0;
}

bool BulkInQueue::waitUntilIdle(Lock& lock, std::chrono::milliseconds limit)
{
    return changed_.wait_until(lock, Clock::now() + limit, [this] { return inFlight_ == 0; });
}

void BulkInQueue::onFinished(BulkInTransfer& transfer)
{
    const Lock lock(mutex_);
    transfer.finish();
    assert(inFlight_ > 0);
    --inFlight_;
    if (transfer.outcome() == UsbResult::NoDevice)
        *gone_ = true;
    else if (transfer.failed())
        onFailure(transfer);
    else
        readAhead(transfer);
    if (dropping_)
        dropFinished();
    else
        dropSurplus();
    changed_.notify_all();
}

void BulkInQueue::onFailure(BulkInTransfer& transfer)
{
    stalled_ = stalled_ || transfer.outcome() == UsbResult::PipeStalled;
    if (std::exchange(failed_, true)) {
        // The transfers behind the first failed one share its fate, which is told only once.
        transfer.forgive();
        return;
    }
    cancelNewestFirst();
}

UsbResult BulkInQueue::read(std::span<std::uint8_t> buffer, std::size_t& received,
                            const UsbTimeouts& timeouts)
{
    received = 0;
    if (buffer.empty())
        return UsbResult::Success;
    Lock lock(mutex_);
    if (stopped_)
        return *gone_ ? UsbResult::NoDevice : UsbResult::NotOpen;
    const auto lastEnd = Clock::now() + timeouts.completion;
    auto quietEnd = Clock::now() + timeouts.noData;
    auto droppedEnd = Clock::time_point::max();
    const auto endedBy = [&received](UsbResult result) {
        return received > 0 ? UsbResult::Success : result;
    };
    for (;;) {
        if (*gone_)
            return endedBy(UsbResult::NoDevice);
        if (stopped_)
            return endedBy(UsbResult::Aborted);
        const std::size_t before = received;
        if (const auto ended = takeFinished(buffer, received))
            return *ended;
        if (dropping_ && received > 0)
            return UsbResult::Success;
        if (line_.empty() && !paused_) {
            if (const UsbResult result = restart(lock); !succeeded(result))
                return endedBy(result);
            continue;
        }
        const auto now = Clock::now();
        if (received > before)
            quietEnd = now + timeouts.noData;
        droppedEnd = dropping_ ? std::min(droppedEnd, now + droppedWait) : Clock::time_point::max();
        const auto deadline = std::min({lastEnd, quietEnd, droppedEnd});
        if (now >= deadline)
            return endedBy(UsbResult::TransactionTimeout);
        changed_.wait_until(lock, deadline);
    }
}

/// Serves finished transfers; a result when that ends the read.
std::optional<UsbResult> BulkInQueue::takeFinished(std::span<std::uint8_t> buffer,
                                                   std::size_t& received)
{
    while (!line_.empty() && line_.front()->finished()) {
        BulkInTransfer& front = *line_.front();
        copyFront(buffer, received);
        const bool containerEnded = boundary_.isReached();
        if (containerEnded)
            boundary_.restart();
        if (front.unreadCount() > 0) {
            filledExactly_ = false;
            return UsbResult::Success;
        }
        if (front.failed()) {
            // A failure behind bytes of this read is the next read's.
            if (received > 0)
                return UsbResult::Success;
            const UsbResult failure = front.outcome();
            front.forgive();
            filledExactly_ = false;
            boundary_.restart();
            retireFront();
            return failure;
        }
        const bool shortEnd = front.endedShort();
        const bool empty = front.receivedCount() == 0;
        // An empty packet right behind a read that a full transfer filled is that read's end.
        const bool pastEnd = filledExactly_ && empty && received == 0;
        const bool ended = (shortEnd && !pastEnd) || containerEnded;
        const bool full = received == buffer.size();
        if (shortEnd || !empty)
            filledExactly_ = (full || containerEnded) && !shortEnd;
        if (shortEnd)
            boundary_.restart();
        retireFront();
        if (ended || full)
            return UsbResult::Success;
    }
    return std::nullopt;
}

/// Copies what is left of the front transfer, up to the end of the buffer or of a container.
void BulkInQueue::copyFront(std::span<std::uint8_t> buffer, std::size_t& received)
{
    BulkInTransfer& front = *line_.front();
    while (front.unreadCount() > 0 && received < buffer.size() && !boundary_.isReached()) {
        const auto room = buffer.subspan(received);
        const auto piece = room.first(std::min(room.size(), boundary_.limit()));
        const std::size_t count = front.read(piece);
        boundary_.advance(piece.first(count));
        received += count;
    }
}

void BulkInQueue::dropUntilWrite()
{
    const Lock lock(mutex_);
    dropping_ = true;
    filledExactly_ = false;
    dropFinished();
    changed_.notify_all();
}

void BulkInQueue::endDropping()
{
    Lock lock(mutex_);
    if (!dropping_ || stopped_)
        return;
    // A read may be starting the ring anew at this moment.
    const auto limit = Clock::now() + flushLimit;
    changed_.wait_until(lock, limit, [this] { return !paused_; });
    if (!paused_) {
        paused_ = true;
        cancelOldestFirst();
        waitUntilIdle(lock, flushLimit);
        boundary_.restart();
        if (line_.empty() && !*gone_)
            static_cast<void>(restart(lock));
        paused_ = false;
    }
    dropping_ = false;
    changed_.notify_all();
}

void BulkInQueue::writeEnded()
{
    const Lock lock(mutex_);
    if (failed_ || paused_ || stopped_ || *gone_)
        return;
    addSpare();
    static_cast<void>(submitIdle(0));
}

void BulkInQueue::deviceLeft()
{
    const Lock lock(mutex_);
    *gone_ = true;
    changed_.notify_all();
}

BulkInQueue::Shape BulkInQueue::shape() const
{
    const Lock lock(mutex_);
    return {.depth = depth_, .transferSize = transferSize_};
}

}  // namespace nivor
