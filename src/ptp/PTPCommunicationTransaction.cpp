// One transaction as its calling thread sees it: send, wait, stop.

#include "codes/ClassRequest.h"
#include "codes/EventCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"
#include "foundation/ResultText.h"
#include "foundation/SpinUntil.h"
#include "ptp/CommandContainer.h"
#include "ptp/PTPCommunication.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <utility>

namespace nivor {
namespace {

using namespace std::chrono_literals;

constexpr auto waitingStep = 100ms;
constexpr UsbTimeouts controlTimeouts{2000ms, 2000ms};
constexpr auto statusPollPause = 10ms;
constexpr std::size_t deviceStatusSize = 128;
constexpr std::size_t deviceStatusCodeOffset = 2;
constexpr std::uint32_t highestTransactionID = 0xFFFFFFFE;

// "%02x " for every byte, the last one included.
std::string dumpOf(const ByteBuffer& data)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string dump;
    dump.reserve(3 * data.size());
    for (const std::uint8_t byte : data) {
        dump += digits[byte >> 4];
        dump += digits[byte & 0x0F];
        dump += ' ';
    }
    return dump;
}

}  // namespace

/// The loop works on the engine and on the caller's sink: it has to be over even when an error is
/// raised on the way.
struct PTPCommunication::ReceptionGuard {
    PTPCommunication& engine;
    OperationQueue& queue;

    ~ReceptionGuard()
    {
        if (!engine.isReceivedFinish())
            engine.setIsReceivedError(true);
        queue.waitUntilAllOperationsAreFinished();
    }
};

bool PTPCommunication::writePipe(const ByteBuffer& data)
{
    constexpr Selector selector{"writePipe:"};
    writeLog(selector.text(),
             fmt::format("WritePipe : len = {}, data = {}", data.size(), dumpOf(data)));
    const std::shared_ptr<UsbInterface> interface = usbInterface();
    const bool success = interface && succeeded(interface->writePipe(data));
    writeLog(selector.text(), fmt::format("WritePipe (result = {})", resultText(success)));
    return success;
}

bool PTPCommunication::executePTPTransaction(ByteBuffer& command, ByteBuffer* dataBuffer,
                                             ReceiveSlot* receiveBuffer,
                                             std::uint64_t receiveBufferSize,
                                             PTPTransactionCallback* receiveCallback,
                                             bool isReceiveData, std::uint32_t timeout)
{
    constexpr Selector selector{
        "executePTPTransaction:dataBuffer:receiveBuffer:receiveBufferSize:receiveCallback:"
        "isReceiveData:timeout:"};
    if (!usbInterface()) {
        failure_.set({.cause = TransactionFailure::Cause::NotConnected});
        return false;
    }

    stampTransactionID(command, transactionID());
    if (dataBuffer != nullptr)
        stampTransactionID(*dataBuffer, transactionID());
    resetTransaction(receiveBuffer, receiveBufferSize, isReceiveData);

    // The loop reads before the command is on its way, so that no answer can come too early.
    OperationQueue& queue = setReceiveOperation(receiveCallback);
    const ReceptionGuard guard{*this, queue};
    writePipe(command);
    sentTransaction_ = transactionID();
    if (dataBuffer != nullptr)
        writePipe(*dataBuffer);

    setTimeoutTimer(0);
    const StopReason reason = waitForReception(queue, timeout);
    queue.waitUntilAllOperationsAreFinished();

    recordOutcome(reason);
    settleAnswer(selector.text());
    if (receiveBuffer != nullptr && *receiveBuffer == nullptr)
        *receiveBuffer = tmpBuffer();
    setTmpBuffer(nullptr);
    advanceTransactionID();
    return reason != StopReason::TimedOut && !isReceivedError();
}

void PTPCommunication::resetTransaction(ReceiveSlot* receiveBuffer, std::uint64_t receiveBufferSize,
                                        bool isReceiveData)
{
    setIsReceivedResponse(false);
    setIsReceivedData(!isReceiveData);
    setIsReceivedError(false);
    setIsReceiveCancel(false);
    setIsAnswerEarlier(false);
    isDataExpected_ = isReceiveData;
    isResponseEarlier_ = false;
    setIsReceivedFinish(false);
    setLastResponseCode(0);
    failure_.set({});
    setTmpBuffer(receiveBuffer != nullptr ? *receiveBuffer : nullptr);
    setTmpBufferSize(receiveBufferSize);
}

PTPCommunication::StopReason PTPCommunication::waitForReception(OperationQueue& queue,
                                                                std::uint32_t timeout)
{
    auto stepEnd = std::chrono::steady_clock::now();
    while (!isReceivedFinish()) {
        if (timeoutTimer() >= timeout) {
            setIsReceivedError(true);
            queue.waitUntilAllOperationsAreFinished();
            return StopReason::TimedOut;
        }
        if (isStopCopyFlg()) {
            setIsReceivedError(true);
            queue.waitUntilAllOperationsAreFinished();
            return StopReason::Stopped;
        }
        // A slow disk is no silence of the camera's: it can't send while nobody reads.
        // A step that woke late shortens the next one, so that the sum stays true; after a pause of
        // the whole machine nothing is made up for.
        const auto step = paced(waitingStep);
        stepEnd = std::max(stepEnd + step, std::chrono::steady_clock::now());
        if (waitOneStepUntil(stepEnd) && !isDelivering())
            addToTimeoutTimer(
                static_cast<std::uint32_t>(waitingStep / std::chrono::milliseconds(1)));
    }
    return StopReason::Finished;
}

// True when the whole step has passed; false when the loop has ended or a stop came.
bool PTPCommunication::waitOneStepUntil(std::chrono::steady_clock::time_point stepEnd)
{
    const auto isOver = [this] { return isReceivedFinish() || isStopCopyFlg(); };
    if (spinUntil(isOver))
        return false;
    std::unique_lock guard(wakeMutex_);
    return !wake_.wait_until(guard, stepEnd, isOver);
}

void PTPCommunication::wakeWaitingThread()
{
    // Taken and left at once: a waiting thread is now either before its test or asleep.
    {
        const std::lock_guard guard(wakeMutex_);
    }
    wake_.notify_all();
}

std::chrono::milliseconds PTPCommunication::paced(std::chrono::milliseconds duration) const
{
    return std::max(duration / parts_.pace, std::chrono::milliseconds(1));
}

UsbTimeouts PTPCommunication::paced(const UsbTimeouts& timeouts) const
{
    return {paced(timeouts.noData), paced(timeouts.completion)};
}

void PTPCommunication::recordOutcome(StopReason reason)
{
    TransactionFailure failure = failure_.get();
    // What failed first is the cause: a full disk may be followed by a camera that doesn't answer.
    if (failure.cause == TransactionFailure::Cause::None) {
        if (reason == StopReason::TimedOut)
            failure.cause = TransactionFailure::Cause::TimedOut;
        if (reason == StopReason::Stopped)
            failure.cause = TransactionFailure::Cause::Stopped;
    }
    const bool isSinkRefused = failure.cause == TransactionFailure::Cause::SinkRefused;
    if (isAnswerEarlier() && (isSinkRefused || failure.cause == TransactionFailure::Cause::None))
        failure.cause = TransactionFailure::Cause::EarlierAnswer;
    failure.responseCode = isResponseEarlier_ ? 0 : lastResponseCode();
    failure_.set(std::move(failure));
}

// Has the camera drop an answer that is sure to come: it would be taken for the next command's.
void PTPCommunication::settleAnswer(std::string_view event)
{
    // The stop was confirmed before the camera had the command.
    const bool isStoppedTooEarly =
        isStopCopyFlg() && stoppedTransaction_ != transactionID() && !isReceivedResponse();
    if (!isStoppedTooEarly && !isResponseEarlier_)
        return;
    // Nobody waits for its word, so it is not asked for long.
    constexpr int fewPolls = 3;
    bool lastStatusSucceeded = false;
    requestCancel(fewPolls, lastStatusSucceeded);
    writeLog(event, fmt::format("Late answer (cancel = {})", resultText(lastStatusSucceeded)));
}

void PTPCommunication::advanceTransactionID()
{
    setTransactionID(transactionID() >= highestTransactionID ? 1 : transactionID() + 1);
}

bool PTPCommunication::cancelTransaction()
{
    constexpr Selector selector{"cancelTransaction"};
    bool lastStatusSucceeded = false;
    const std::uint32_t underWay = sentTransaction_;
    if (requestCancel(mostStatusPolls, lastStatusSucceeded)) {
        stoppedTransaction_ = underWay;
        setIsStopCopyFlg(true);
        wakeWaitingThread();
    }
    writeLog(selector.text(),
             fmt::format("cancelTransaction (result = {})", resultText(lastStatusSucceeded)));
    return false;
}

// Asks the camera to stop the running transaction; true once it says that it has stopped.
// `lastStatusSucceeded` tells whether the last request of the conversation itself succeeded.
bool PTPCommunication::requestCancel(int mostPolls, bool& lastStatusSucceeded)
{
    lastStatusSucceeded = false;
    const std::shared_ptr<UsbDevice> device = usbDevice();
    if (!device)
        return false;

    // USB Still Image class, 5.2.1: cancellation code, then the transaction to stop.
    ByteBuffer cancellation;
    appendLittleEndian(cancellation, static_cast<std::uint16_t>(EventCode::CancelTransaction));
    appendLittleEndian(cancellation, transactionID());
    ControlRequest cancel{.bmRequestType = classRequestOut,
                          .bRequest = static_cast<std::uint8_t>(ClassRequest::CancelRequest),
                          .data = cancellation,
                          .timeouts = paced(controlTimeouts)};
    if (!succeeded(device->controlRequest(cancel)))
        return false;

    for (int poll = 0; poll < mostPolls; ++poll) {
        // Zero each time: a camera may answer with fewer bytes, even none.
        std::array<std::uint8_t, deviceStatusSize> status{};
        ControlRequest request{.bmRequestType = classRequestIn,
                               .bRequest = static_cast<std::uint8_t>(ClassRequest::GetDeviceStatus),
                               .data = status,
                               .timeouts = paced(controlTimeouts)};
        lastStatusSucceeded = succeeded(device->controlRequest(request));
        const std::uint16_t code = ByteReader(status, deviceStatusCodeOffset).u16();
        if (lastStatusSucceeded && code == static_cast<std::uint16_t>(ResponseCode::OK))
            return true;
        parts_.runLoopSlice(paced(statusPollPause));
    }
    return false;
}

}  // namespace nivor
