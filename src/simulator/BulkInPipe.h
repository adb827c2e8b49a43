/// The bulk-in pipe of one attachment: transfers queue up at one end and are read at the other.
#pragma once

#include "simulator/InTransfer.h"
#include "usb/UsbResult.h"
#include "usb/UsbTimeouts.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

namespace nivor {

/// Any number of threads may use it, one at a time may read.
class BulkInPipe {
public:
    /// `maxPacketSize` in bytes: a power of two from 8 to 1024.
    explicit BulkInPipe(std::size_t maxPacketSize);

    void queue(InTransfer transfer);

    /// Takes back all that is left of a transaction's answer; false when nothing was.
    bool drop(std::uint32_t transactionID);

    /// Takes back everything, a halt included.
    void flush();

    /// The camera has confirmed a cancel: there is nothing to wait for until the next command, and
    /// a host can know that, so reads that have nothing end soon, and those that have a part at
    /// once.
    void setSettled(bool isSettled);
    [[nodiscard]] bool isSettled() const;

    /// The camera leaves, for good.
    void disconnect();
    [[nodiscard]] bool isConnected() const;

    /// Bytes a second; 0 = no limit.
    void setRate(double bytesPerSecond);

    /// Bytes that readers have taken so far, or are about to.
    [[nodiscard]] std::uint64_t bytesSent() const;

    /// As `UsbInterface::readPipe`. A time-out of 0 takes what is there already. A buffer that
    /// ends within a packet loses that packet and answers `UsbResult::Overrun`.
    UsbResult read(std::span<std::uint8_t> buffer, std::size_t& received,
                   const UsbTimeouts& timeouts);

private:
    using Clock = std::chrono::steady_clock;
    using TransferPointer = std::shared_ptr<const InTransfer>;

    /// What one `read` has achieved so far, and until when it may go on.
    struct Reading {
        std::span<std::uint8_t> buffer;
        std::size_t filled;
        Clock::duration noData;
        Clock::time_point noDataDeadline;
        Clock::time_point completionDeadline;
        std::uint64_t settledBefore = 0;  ///< how often the pipe had, when the first bytes came
        std::optional<Clock::time_point> settledDeadline{};

        [[nodiscard]] std::size_t room() const { return buffer.size() - filled; }
        [[nodiscard]] bool isFull() const { return room() == 0; }
        [[nodiscard]] Clock::time_point deadline() const;
    };

    enum class Step : std::uint8_t { GoOn, Finished, TimedOut, Left, Halted, Overran };

    Step advance(std::unique_lock<std::mutex>& lock, Reading& reading);
    Step move(std::unique_lock<std::mutex>& lock, Reading& reading, std::size_t count);
    Step waitUntil(std::unique_lock<std::mutex>& lock, Reading& reading, Clock::time_point due);
    Step overrun(const InTransfer& transfer);
    std::size_t carriedByNow(std::size_t wanted, Clock::time_point now);
    Clock::time_point carriedAt(std::size_t bytes) const;
    void finishFirst();
    void replaceRestOfFirst();

    const std::size_t maxPacketSize_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<TransferPointer> transfers_;
    std::uint64_t position_ = 0;  // within the first transfer
    std::uint64_t bytesSent_ = 0;
    double bytesPerSecond_ = 0;
    Clock::time_point wireFreeAt_{};  // when the wire has carried all that was read
    bool connected_ = true;
    bool isSettled_ = false;
    std::uint64_t settledCount_ = 0;
};

}  // namespace nivor
