// The ring of transfers behind the queued reader: filling it, and sending transfers round.
#include "usb/BulkInQueue.h"

#include "usb/LibusbResult.h"

#include <cassert>
#include <utility>

namespace nivor {

/// Submits a full ring of such transfers, or half of what the kernel has memory for: the other
/// half is left to the requests that go the other way and to other programs.
UsbResult BulkInQueue::fillRing(std::size_t transferSize)
{
    // Only whole packets: the device must never send more than the rest of a buffer holds.
    transferSize_ = transferSize - transferSize % maxPacketSize_;
    depth_ = most_.depth;
    idle_.clear();
    // Nothing may fail between a submission and its place in the line.
    line_.reserve(mostUnread / smallestTransfer + most_.depth + 2);
    UsbResult result = UsbResult::Success;
    for (std::size_t i = 0; i < most_.depth && succeeded(result); ++i) {
        auto transfer = BulkInTransfer::create(handle_, endpoint_, transferSize_, *this);
        if (!transfer)
            result = UsbResult::NoMemory;
        else if (i + 1 < most_.depth)
            result = submit(std::move(transfer));
        else
            idle_.push_back(std::move(transfer));
    }
    if (result != UsbResult::NoMemory || line_.empty())
        return result;
    idle_.clear();
    halve();
    return UsbResult::Success;
}

/// Takes the newer half of the line out of the ring.
void BulkInQueue::halve()
{
    depth_ = line_.size() - line_.size() / 2;
    for (std::size_t i = depth_; i < line_.size(); ++i)
        line_[i]->cancel();
}

UsbResult BulkInQueue::submit(std::unique_ptr<BulkInTransfer> transfer)
{
    const UsbResult result = transfer->submit();
    if (succeeded(result)) {
        line_.push_back(std::move(transfer));
        ++inFlight_;
        return result;
    }
    if (result == UsbResult::NoDevice)
        *gone_ = true;
    idle_.push_back(std::move(transfer));
    return result;
}

/// Submits what is idle, but for `kept` transfers. A success when at least one transfer is in
/// flight then.
UsbResult BulkInQueue::submitIdle(std::size_t kept)
{
    UsbResult result = UsbResult::Success;
    while (idle_.size() > kept && succeeded(result)) {
        auto transfer = std::move(idle_.back());
        idle_.pop_back();
        result = submit(std::move(transfer));
    }
    return inFlight_ > 0 ? UsbResult::Success : result;
}

/// Makes one transfer more when none has been kept back. Data that breaks off, as after a stop that
/// the camera has not confirmed, has none behind it: a short packet at its end would have left one.
void BulkInQueue::addSpare()
{
    if (!idle_.empty() || inFlight_ > depth_)
        return;
    if (auto spare = takeExtra())
        idle_.push_back(std::move(spare));
}

std::unique_ptr<BulkInTransfer> BulkInQueue::takeExtra()
{
    if (extras_.empty())
        return BulkInTransfer::create(handle_, endpoint_, transferSize_, *this);
    auto extra = std::move(extras_.back());
    extras_.pop_back();
    return extra;
}

/// Keeps the wire going while the reader is busy: for each transfer that has filled, another one.
void BulkInQueue::readAhead(const BulkInTransfer& finished)
{
    const bool isHeldBack = failed_ || paused_ || stopped_ || dropping_ || *gone_;
    const bool isFull = succeeded(finished.outcome()) && !finished.endedShort();
    // Where the kernel had no memory for a whole ring, others need what there is.
    const bool isMemoryShort = isMemoryShort_ || depth_ < most_.depth;
    if (isHeldBack || !isFull || isMemoryShort || 2 * inFlight_ >= depth_
        || line_.size() * transferSize_ >= mostUnread)
        return;
    auto extra = takeExtra();
    if (extra && succeeded(extra->submit())) {
        line_.push_back(std::move(extra));
        ++inFlight_;
        return;
    }
    // Commands and cancel requests need some too. The next answer is another matter.
    isMemoryShort_ = true;
    extras_.clear();
}

/// Starts the ring anew once it has run out. The lock is open meanwhile.
UsbResult BulkInQueue::restart(Lock& lock)
{
    assert(line_.empty());
    paused_ = true;
    if (std::exchange(stalled_, false)) {
        lock.unlock();
        const UsbResult cleared = resultOfLibusbError(libusb_clear_halt(handle_, endpoint_));
        lock.lock();
        // Any other failure shows again, and with more reason, in the next transfer.
        if (cleared == UsbResult::NoDevice)
            *gone_ = true;
    }
    paused_ = false;
    failed_ = false;
    const UsbResult result = *gone_ ? UsbResult::NoDevice
        : stopped_                  ? UsbResult::NotOpen
                                    : submitIdle(idle_.size() > 1 ? 1 : 0);
    changed_.notify_all();
    return result;
}

/// For when the data must stay in order: none flows into a transfer behind a cancelled one.
void BulkInQueue::cancelNewestFirst()
{
    for (auto transfer = line_.rbegin(); transfer != line_.rend(); ++transfer) {
        if (!(*transfer)->finished())
            (*transfer)->cancel();
    }
}

/// For when the data doesn't matter any more: the controller is never made to pass over a transfer
/// that it is working on, which some emulated ones get wrong.
void BulkInQueue::cancelOldestFirst()
{
    for (const auto& transfer : line_) {
        if (!transfer->finished())
            transfer->cancel();
    }
}

/// Sends the front transfer, whose bytes are done with, to the end of the line.
void BulkInQueue::retireFront()
{
    auto transfer = std::move(line_.front());
    line_.erase(line_.begin());
    const bool isHeldBack = failed_ || paused_ || stopped_ || *gone_;
    // Most likely the end of an answer: this one goes behind the next write.
    const bool endsAnswer = transfer->endedShort() && idle_.empty() && inFlight_ > 0;
    if (transfer->endedShort()) {
        extras_.clear();
        isMemoryShort_ = false;
    }
    if ((isHeldBack && idle_.size() < depth_) || endsAnswer) {
        idle_.push_back(std::move(transfer));
    } else if (isHeldBack || inFlight_ + idle_.size() >= depth_) {
        // The ring is whole without this one: there was a spare, or it was read ahead into, or the
        // ring is smaller now and its memory is for others.
        if (depth_ == most_.depth)
            extras_.push_back(std::move(transfer));
    } else {
        // If the kernel has no memory for it now, it waits until the ring has run out.
        static_cast<void>(submit(std::move(transfer)));
    }
}

void BulkInQueue::dropFinished()
{
    while (!line_.empty() && line_.front()->finished())
        retireFront();
}

/// Lets go at once of transfers that were cancelled to make the ring smaller and hold nothing; the
/// others go when they have been read.
void BulkInQueue::dropSurplus()
{
    const auto isSurplus = [](const BulkInTransfer& transfer) {
        return transfer.finished() && transfer.receivedCount() == 0
            && transfer.outcome() == UsbResult::Aborted;
    };
    while (depth_ < most_.depth && line_.size() > depth_ && isSurplus(*line_.back()))
        line_.pop_back();
}

}  // namespace nivor
