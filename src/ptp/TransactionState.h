/// The state of the engine's transactions, shared between its threads.
#pragma once

#include "foundation/AtomicProperty.h"
#include "foundation/Bytes.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace nivor {

/// Properties whose getters and setters are individually atomic; nothing else guards them.
/// Which thread writes which stands in ARCHITECTURE.md.
class TransactionState {
public:
    /// A response container has been read in this transaction.
    [[nodiscard]] bool isReceivedResponse() const { return isReceivedResponse_; }
    void setIsReceivedResponse(bool value) { isReceivedResponse_ = value; }

    /// The data phase is complete, or none is expected.
    [[nodiscard]] bool isReceivedData() const { return isReceivedData_; }
    void setIsReceivedData(bool value) { isReceivedData_ = value; }

    /// Cleared at the start of every transaction; nothing sets it.
    [[nodiscard]] bool isReceiveCancel() const { return isReceiveCancel_; }
    void setIsReceiveCancel(bool value) { isReceiveCancel_ = value; }

    /// The transaction has failed or is being stopped; the receive loop ends at its next check.
    [[nodiscard]] bool isReceivedError() const { return isReceivedError_; }
    void setIsReceivedError(bool value) { isReceivedError_ = value; }

    /// The receive loop has ended; its last write.
    [[nodiscard]] bool isReceivedFinish() const { return isReceivedFinish_; }
    void setIsReceivedFinish(bool value) { isReceivedFinish_ = value; }

    /// What this transaction brought answers an earlier one: its data, or its response where it has
    /// no data phase. Containers are matched to transactions by their order alone, so it completes
    /// with that all the same.
    [[nodiscard]] bool isAnswerEarlier() const { return isAnswerEarlier_; }
    void setIsAnswerEarlier(bool value) { isAnswerEarlier_ = value; }

    /// Code of the last response read; 0 at the start of every transaction.
    [[nodiscard]] std::uint16_t lastResponseCode() const { return lastResponseCode_; }
    void setLastResponseCode(std::uint16_t value) { lastResponseCode_ = value; }

    /// Milliseconds that the waiting thread has counted since the last sign of progress.
    [[nodiscard]] std::uint32_t timeoutTimer() const { return timeoutTimer_; }
    void setTimeoutTimer(std::uint32_t value) { timeoutTimer_ = value; }

    /// In one step, so that a reset on the other thread is never undone.
    void addToTimeoutTimer(std::uint32_t value) { timeoutTimer_ += value; }

    /// Where incoming data collects when there is no sink, header included; or none.
    [[nodiscard]] std::shared_ptr<ByteBuffer> tmpBuffer() const { return tmpBuffer_.get(); }
    void setTmpBuffer(std::shared_ptr<ByteBuffer> value) { tmpBuffer_.set(std::move(value)); }

    /// The caller's expected size of the incoming data container, in bytes.
    [[nodiscard]] std::uint64_t tmpBufferSize() const { return tmpBufferSize_; }
    void setTmpBufferSize(std::uint64_t value) { tmpBufferSize_ = value; }

    /// The ID written into the next command.
    [[nodiscard]] std::uint32_t transactionID() const { return transactionID_; }
    void setTransactionID(std::uint32_t value) { transactionID_ = value; }

    /// The sink has a piece and has not answered yet.
    [[nodiscard]] bool isDelivering() const { return isDelivering_; }
    void setIsDelivering(bool value) { isDelivering_ = value; }

    /// A PTP session is open.
    [[nodiscard]] bool sessionOpen() const { return sessionOpen_; }
    void setSessionOpen(bool value) { sessionOpen_ = value; }

    /// A stop of the running transaction has been confirmed by the camera.
    [[nodiscard]] bool isStopCopyFlg() const { return isStopCopyFlg_; }
    void setIsStopCopyFlg(bool value) { isStopCopyFlg_ = value; }

private:
    std::atomic<bool> isReceivedResponse_{false};
    std::atomic<bool> isReceivedData_{false};
    std::atomic<bool> isReceiveCancel_{false};
    std::atomic<bool> isReceivedError_{false};
    std::atomic<bool> isReceivedFinish_{false};
    std::atomic<bool> isAnswerEarlier_{false};
    std::atomic<std::uint16_t> lastResponseCode_{0};
    std::atomic<std::uint32_t> timeoutTimer_{0};
    AtomicProperty<std::shared_ptr<ByteBuffer>> tmpBuffer_;
    std::atomic<std::uint64_t> tmpBufferSize_{0};
    std::atomic<std::uint32_t> transactionID_{0};
    std::atomic<bool> isDelivering_{false};
    std::atomic<bool> sessionOpen_{false};
    std::atomic<bool> isStopCopyFlg_{false};
};

}  // namespace nivor
