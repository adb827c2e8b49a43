#include "simulator/BulkInPipe.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <utility>

namespace nivor {

namespace {

// Made without the lock, so that a cancel or a detach never waits for longer than one slice.
constexpr std::size_t sliceSize = std::size_t{1} << 20;

// A paced wire may catch up on this much idling between two reads, as a camera's own buffer does;
// it also makes up for late wake-ups, so that the average pace is right.
constexpr std::chrono::milliseconds mostCatchingUp{10};

// How often a paced read looks again while bytes trickle in.
constexpr std::chrono::milliseconds pacedStep{2};

// For whoever waits at a settled pipe to find out what happens next.
constexpr std::chrono::milliseconds settledWait{20};

// Keeps time arithmetic clear of overflow for a time-out of "for ever".
constexpr std::chrono::hours longestWait{24};

}  // namespace

BulkInPipe::BulkInPipe(std::size_t maxPacketSize)
    : maxPacketSize_(maxPacketSize)
{
    assert(std::has_single_bit(maxPacketSize) && maxPacketSize >= 8 && maxPacketSize <= 1024);
}

void BulkInPipe::queue(InTransfer transfer)
{
    auto shared = std::make_shared<const InTransfer>(std::move(transfer));
    {
        const std::lock_guard guard(mutex_);
        transfers_.push_back(std::move(shared));
    }
    changed_.notify_all();
}

bool BulkInPipe::drop(std::uint32_t transactionID)
{
    const auto belongs = [&](const TransferPointer& transfer) {
        return transfer->transactionID == transactionID;
    };
    std::size_t dropped = 0;
    {
        const std::lock_guard guard(mutex_);
        if (!transfers_.empty() && belongs(transfers_.front()))
            position_ = 0;
        dropped = std::erase_if(transfers_, belongs);
    }
    changed_.notify_all();
    return dropped != 0;
}

void BulkInPipe::flush()
{
    {
        const std::lock_guard guard(mutex_);
        transfers_.clear();
        position_ = 0;
    }
    changed_.notify_all();
}

void BulkInPipe::setSettled(bool isSettled)
{
    {
        const std::lock_guard guard(mutex_);
        if (isSettled && !isSettled_)
            ++settledCount_;
        isSettled_ = isSettled;
    }
    changed_.notify_all();
}

bool BulkInPipe::isSettled() const
{
    const std::lock_guard guard(mutex_);
    return isSettled_;
}

void BulkInPipe::disconnect()
{
    {
        const std::lock_guard guard(mutex_);
        connected_ = false;
        transfers_.clear();
        position_ = 0;
    }
    changed_.notify_all();
}

bool BulkInPipe::isConnected() const
{
    const std::lock_guard guard(mutex_);
    return connected_;
}

void BulkInPipe::setRate(double bytesPerSecond)
{
    {
        const std::lock_guard guard(mutex_);
        bytesPerSecond_ = bytesPerSecond;
    }
    changed_.notify_all();
}

std::uint64_t BulkInPipe::bytesSent() const
{
    const std::lock_guard guard(mutex_);
    return bytesSent_;
}

BulkInPipe::Clock::time_point BulkInPipe::Reading::deadline() const
{
    return std::min(noDataDeadline, completionDeadline);
}

UsbResult BulkInPipe::read(std::span<std::uint8_t> buffer, std::size_t& received,
                           const UsbTimeouts& timeouts)
{
    received = 0;
    const auto bounded = [](std::chrono::milliseconds timeout) -> Clock::duration {
        return std::min<std::chrono::milliseconds>(timeout, longestWait);
    };
    const Clock::time_point start = Clock::now();
    Reading reading{.buffer = buffer,
                    .filled = 0,
                    .noData = bounded(timeouts.noData),
                    .noDataDeadline = start + bounded(timeouts.noData),
                    .completionDeadline = start + bounded(timeouts.completion)};

    std::unique_lock lock(mutex_);
    wireFreeAt_ = std::max(wireFreeAt_, start - mostCatchingUp);
    Step step = Step::GoOn;
    while (step == Step::GoOn)
        step = advance(lock, reading);

    switch (step) {
    case Step::Left:
        return UsbResult::NoDevice;
    case Step::Halted:
        return UsbResult::PipeStalled;
    case Step::Overran:
        return UsbResult::Overrun;
    case Step::TimedOut:
        if (reading.filled == 0)
            return UsbResult::TransactionTimeout;
        break;
    case Step::GoOn:
    case Step::Finished:
        break;
    }
    received = reading.filled;
    return UsbResult::Success;
}

BulkInPipe::Step BulkInPipe::advance(std::unique_lock<std::mutex>& lock, Reading& reading)
{
    if (!connected_)
        return Step::Left;
    if (reading.isFull())
        return Step::Finished;
    // A part from before the pipe settled is of a transaction that is over; the next one's answer
    // may be here already.
    if (reading.filled == 0)
        reading.settledBefore = settledCount_;
    else if (reading.settledBefore != settledCount_)
        return Step::Finished;
    if (transfers_.empty())
        return waitUntil(lock, reading, Clock::time_point::max());

    const InTransfer& transfer = *transfers_.front();
    const Clock::time_point now = Clock::now();
    if (transfer.readyAt > now)
        return waitUntil(lock, reading, transfer.readyAt);
    if (transfer.halt != InTransfer::Halt::No) {
        if (transfer.halt == InTransfer::Halt::Once)
            finishFirst();
        return Step::Halted;
    }
    if (transfer.vanishAfter && position_ >= *transfer.vanishAfter) {
        connected_ = false;
        return Step::Left;
    }

    const std::uint64_t left = transfer.size() - position_;
    if (left == 0) {
        // Only the end is left: an empty packet, or nothing that a host could see.
        const bool visible = transfer.zeroPacket || transfer.size() == 0;
        finishFirst();
        return visible ? Step::Finished : Step::GoOn;
    }
    if (reading.room() < std::min<std::uint64_t>(left, maxPacketSize_))
        return overrun(transfer);

    std::size_t wanted = std::min({left, std::uint64_t{reading.room()}, std::uint64_t{sliceSize}});
    if (wanted < left)
        wanted -= wanted % maxPacketSize_;
    wireFreeAt_ = std::max(wireFreeAt_, transfer.readyAt);
    const std::size_t carried = carriedByNow(wanted, now);
    if (carried == 0) {
        const Clock::time_point nextPacket = carriedAt(std::min(wanted, maxPacketSize_));
        const Clock::time_point enough = std::min(carriedAt(wanted), now + pacedStep);
        return waitUntil(lock, reading, std::max(nextPacket, enough));
    }
    return move(lock, reading, carried);
}

BulkInPipe::Step BulkInPipe::move(std::unique_lock<std::mutex>& lock, Reading& reading,
                                  std::size_t count)
{
    const TransferPointer transfer = transfers_.front();
    const std::uint64_t from = position_;
    if (transfer->vanishAfter)
        count = std::min<std::uint64_t>(count, *transfer->vanishAfter - from);

    bytesSent_ += count;
    lock.unlock();
    const bool made = transfer->produce(from, reading.buffer.subspan(reading.filled, count));
    lock.lock();

    if (!connected_ || !made)
        bytesSent_ -= count;
    if (!connected_)
        return Step::Left;
    const bool isStillFirst = !transfers_.empty() && transfers_.front() == transfer;
    if (!made) {
        if (isStillFirst)
            replaceRestOfFirst();
        return Step::Finished;
    }

    // What was cancelled meanwhile had left already.
    reading.filled += count;
    if (bytesPerSecond_ > 0)
        wireFreeAt_ = carriedAt(count);
    reading.noDataDeadline = Clock::now() + reading.noData;
    if (!isStillFirst)
        return Step::GoOn;

    position_ += count;
    if (transfer->vanishAfter && position_ >= *transfer->vanishAfter) {
        // What has come of this read is given; the next one finds the camera gone.
        connected_ = false;
        return reading.filled > 0 ? Step::Finished : Step::Left;
    }
    const bool isWhole = position_ == transfer->size();
    const bool endsShort = transfer->size() % maxPacketSize_ != 0;
    if (isWhole && (endsShort || !transfer->zeroPacket)) {
        finishFirst();
        if (endsShort)
            return Step::Finished;
    }
    return Step::GoOn;
}

BulkInPipe::Step BulkInPipe::waitUntil(std::unique_lock<std::mutex>& lock, Reading& reading,
                                       Clock::time_point due)
{
    const Clock::time_point now = Clock::now();
    if (!isSettled_)
        reading.settledDeadline.reset();
    else if (!reading.settledDeadline)
        reading.settledDeadline = now + settledWait;
    const Clock::time_point deadline =
        std::min(reading.deadline(), reading.settledDeadline.value_or(Clock::time_point::max()));
    if (deadline <= now)
        return Step::TimedOut;
    changed_.wait_until(lock, std::min(due, deadline));
    return Step::GoOn;
}

BulkInPipe::Step BulkInPipe::overrun(const InTransfer& transfer)
{
    const std::uint64_t left = transfer.size() - position_;
    position_ += std::min<std::uint64_t>(left, maxPacketSize_);
    if (left < maxPacketSize_)
        finishFirst();
    return Step::Overran;
}

/// Of the `wanted` bytes, those in packets that the wire can have carried until `now`.
std::size_t BulkInPipe::carriedByNow(std::size_t wanted, Clock::time_point now)
{
    if (bytesPerSecond_ <= 0)
        return wanted;
    const std::chrono::duration<double> busy = now - wireFreeAt_;
    const double bytes = std::max(0.0, busy.count()) * bytesPerSecond_;
    if (bytes >= static_cast<double>(wanted))
        return wanted;
    const auto whole = static_cast<std::size_t>(bytes);
    return whole - whole % maxPacketSize_;
}

/// When the wire will have carried `bytes` more.
BulkInPipe::Clock::time_point BulkInPipe::carriedAt(std::size_t bytes) const
{
    const std::chrono::duration<double> needed(static_cast<double>(bytes) / bytesPerSecond_);
    return wireFreeAt_ + std::chrono::ceil<Clock::duration>(needed);
}

void BulkInPipe::finishFirst()
{
    transfers_.pop_front();
    position_ = 0;
}

/// A data phase can't go on: it ends here, and the answer with another response.
void BulkInPipe::replaceRestOfFirst()
{
    InTransfer response{.transactionID = transfers_.front()->transactionID,
                        .head = transfers_.front()->responseOnFailure};
    std::erase_if(transfers_, [&](const TransferPointer& transfer) {
        return transfer->transactionID == response.transactionID;
    });
    position_ = 0;
    transfers_.push_front(std::make_shared<const InTransfer>(std::move(response)));
}

}  // namespace nivor
