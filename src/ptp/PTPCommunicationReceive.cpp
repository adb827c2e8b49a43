// The receive loop of a transaction: everything here runs on the receive thread.

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "ptp/ContainerHeader.h"
#include "ptp/PTPCommunication.h"
#include "ptp/PTPTransactionCallback.h"

#include <fmt/format.h>

#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <utility>

namespace nivor {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t firstReadSize = 5120;
constexpr std::uint64_t mostReserved = std::uint64_t{64} * 1024;
constexpr UsbTimeouts readTimeouts{600ms, 2000ms};

// The response to a refused object, and what may come before it: an empty packet, an event.
constexpr int mostReadsForResponse = 4;

// Whole buffers while one is left, then small reads: a tail never waits for more than it has.
std::size_t continuationReadSize(std::uint64_t remaining)
{
    return remaining >= ReceiveBuffer::size ? ReceiveBuffer::size : firstReadSize;
}

}  // namespace

/// What one run of the receive loop works on.
struct PTPCommunication::Reception {
    PTPTransactionCallback* callback;
    std::string_view event;
    std::uint64_t mostBytes;                           ///< to collect, header included
    std::chrono::steady_clock::time_point lastMoment;  ///< for the last byte collected
    ReceiveBuffer memory;
    // Most transactions fit into this, and then no page of the large buffer is ever touched.
    std::array<std::uint8_t, firstReadSize> first;
    std::uint64_t total = 0;      ///< bytes of the data container so far, header included
    bool isRefused = false;       ///< nobody takes more
    bool isDataUnderWay = false;  ///< and the camera has more to send
};

OperationQueue& PTPCommunication::setReceiveOperation(PTPTransactionCallback* receiveCallback)
{
    constexpr Selector selector{"setReceiveOperation:"};
    receiveQueue_.addOperation(
        [this, receiveCallback, event = selector.text()] { receive(receiveCallback, event); });
    return receiveQueue_;
}

void PTPCommunication::receive(PTPTransactionCallback* receiveCallback, std::string_view event)
{
    try {
        Reception reception{receiveCallback,
                            event,
                            datasetBounds_.bytes,
                            std::chrono::steady_clock::now() + paced(datasetBounds_.time),
                            spareBuffer_ ? std::move(spareBuffer_) : parts_.allocateReceiveBuffer(),
                            {}};
        if (!reception.memory)
            failReception(TransactionFailure::Cause::NoMemory);
        if (!tmpBuffer())
            setTmpBuffer(std::make_shared<ByteBuffer>());
        setTimeoutTimer(0);
        receiveContainers(reception);
        if (reception.isRefused)
            endRefusedTransaction(reception);
        // The next transaction would ask for as much. After a large object it is given back, with
        // its pages.
        if (reception.total < ReceiveBuffer::size)
            spareBuffer_ = std::move(reception.memory);
    } catch (...) {
        // Sinks are guarded where they are called; what else can be raised is a lack of memory.
        failReception(TransactionFailure::Cause::NoMemory);
    }
    setIsReceivedFinish(true);
    wakeWaitingThread();
}

void PTPCommunication::receiveContainers(Reception& reception)
{
    while (!isReceivedError() && !(isReceivedResponse() && isReceivedData())) {
        if (!receiveContainer(reception))
            return;
    }
}

// Reads one container, or finds that none came in time; false ends the loop.
bool PTPCommunication::receiveContainer(Reception& reception)
{
    const std::span<std::uint8_t> first = reception.first;
    // Nothing of an earlier container may pass for the header of a read that brings less.
    std::fill_n(first.begin(), containerHeaderSize, std::uint8_t{0});

    std::size_t received = 0;
    const UsbResult result = readPipe(first, received);
    if (result == UsbResult::TransactionTimeout) {
        writeLog(reception.event, "ReadPipe : timeout1 retry");
        return true;
    }
    writeLog(reception.event, fmt::format("ReadPipe : len = {}", received));
    if (!succeeded(result)) {
        failReception(TransactionFailure::Cause::ReadFailed, result);
        return false;
    }

    const ContainerHeader header = ContainerHeader::parse(first);
    noteTransaction(header);
    if (header.isOfType(ContainerType::Response)) {
        setIsReceivedResponse(true);
        setLastResponseCode(header.code);
    } else if (header.isOfType(ContainerType::Data)) {
        const std::uint64_t completeSize = header.completeSize(tmpBufferSize());
        receiveDataPhase(reception, received, completeSize);
        const bool isSizeUntrue =
            header.length == containerLengthUnknown && reception.total > completeSize;
        if (isSizeUntrue && reception.callback != nullptr && !isReceivedError()) {
            // Such a container ends where the object's size says. Left alone, the rest of the
            // object, gigabytes perhaps, would be taken for containers.
            reception.isRefused = true;
            reception.isDataUnderWay = true;
            failSink(reception, "the camera sent more than it announced");
        }
    }
    return true;
}

// Containers are taken in the order in which they come, whatever transaction they name.
void PTPCommunication::noteTransaction(const ContainerHeader& header)
{
    const bool isResponse = header.isOfType(ContainerType::Response);
    if (!isResponse && !header.isOfType(ContainerType::Data))
        return;
    const bool isEarlier = answerMatch_.isEarlier(header.transactionID, transactionID());
    if (isResponse)
        isResponseEarlier_ = isEarlier;
    if (isResponse != isDataExpected_)
        setIsAnswerEarlier(isEarlier);
}

void PTPCommunication::receiveDataPhase(Reception& reception, std::size_t firstRead,
                                        std::uint64_t completeSize)
{
    reception.total += firstRead;
    const std::span<std::uint8_t> memory = reception.memory.bytes();
    if (!deliver(reception, ByteView(reception.first).first(firstRead), completeSize))
        return;

    std::size_t received = firstRead;
    while (reception.total < completeSize) {
        // Only bytes are progress: empty packets without end must not keep a transaction alive.
        if (received > 0)
            setTimeoutTimer(0);
        const auto piece = memory.first(continuationReadSize(completeSize - reception.total));
        UsbResult result = UsbResult::Aborted;
        while (!isReceivedError()
               && (result = readPipe(piece, received)) == UsbResult::TransactionTimeout)
            writeLog(reception.event, "ReadPipe : timeout2 retry");
        if (isReceivedError() || !succeeded(result)) {
            failReception(TransactionFailure::Cause::ReadFailed, result);
            break;
        }
        reception.total += received;
        if (!deliver(reception, piece.first(received), completeSize))
            break;
    }
    setIsReceivedData(true);
}

UsbResult PTPCommunication::readPipe(std::span<std::uint8_t> buffer, std::size_t& received)
{
    received = 0;
    const std::shared_ptr<UsbInterface> interface = usbInterface();
    return interface ? interface->readPipe(buffer, received, paced(readTimeouts))
                     : UsbResult::NotOpen;
}

// Hands a piece to the sink, or collects it; false when the sink takes no more.
bool PTPCommunication::deliver(Reception& reception, ByteView piece, std::uint64_t completeSize)
{
    if (reception.callback == nullptr)
        return collectPiece(reception, piece, completeSize);
    setIsDelivering(true);
    const auto delivered = qScopeGuard([this] { setIsDelivering(false); });
    try {
        // Assumed until the sink has answered.
        reception.isRefused = true;
        reception.isDataUnderWay = reception.total < completeSize;
        if (reception.callback->callbackProc(reception.total, completeSize, piece.data(),
                                             piece.size())) {
            reception.isRefused = false;
            return true;
        }
        failReception(TransactionFailure::Cause::SinkRefused);
    } catch (const std::exception& error) {
        failSink(reception, error.what());
    } catch (...) {
        failSink(reception, "unknown");
    }
    return false;
}

// Keeps a piece in memory; false when that would be more than the answer may have.
bool PTPCommunication::collectPiece(Reception& reception, ByteView piece,
                                    std::uint64_t completeSize)
{
    const bool isTooMuch = reception.total > reception.mostBytes;
    if (!isTooMuch && std::chrono::steady_clock::now() <= reception.lastMoment) {
        const std::shared_ptr<ByteBuffer> buffer = tmpBuffer();
        // One allocation for a dataset or a thumbnail; of what claims to be larger, as it comes.
        if (buffer->empty())
            buffer->reserve(std::min({completeSize, reception.mostBytes, mostReserved}));
        buffer->insert(buffer->end(), piece.begin(), piece.end());
        return true;
    }
    reception.isRefused = true;
    reception.isDataUnderWay = reception.total < completeSize;
    failReception(isTooMuch ? TransactionFailure::Cause::TooMuchData
                            : TransactionFailure::Cause::TooSlow);
    writeLog(reception.event,
             fmt::format("ReceiveBuffer (error = {}, received = {})", failure_.get().toText(),
                         reception.total));
    return false;
}

void PTPCommunication::failSink(const Reception& reception, const char* reason)
{
    writeLog(reception.event, fmt::format("ReceiveCallback (error = {})", reason));
    failReception(TransactionFailure::Cause::SinkError, UsbResult::Success, reason);
}

// The camera does not know that nobody takes its data. Left alone, what it still has to send
// would answer the next command; so it is asked to stop, or its response is read and dropped.
void PTPCommunication::endRefusedTransaction(Reception& reception)
{
    if (reception.isDataUnderWay) {
        bool lastStatusSucceeded = false;
        requestCancel(mostStatusPolls, lastStatusSucceeded);
        writeLog(
            reception.event,
            fmt::format("ReceiveCallback (cancel = {})", lastStatusSucceeded ? "success" : "fail"));
        return;
    }
    const std::span<std::uint8_t> memory = reception.first;
    for (int i = 0; i < mostReadsForResponse; ++i) {
        std::fill_n(memory.begin(), containerHeaderSize, std::uint8_t{0});
        std::size_t received = 0;
        if (!succeeded(readPipe(memory, received)))
            return;
        writeLog(reception.event, fmt::format("ReadPipe : len = {}", received));
        const ContainerHeader header = ContainerHeader::parse(memory);
        noteTransaction(header);
        if (header.isOfType(ContainerType::Response))
            return;
    }
}

void PTPCommunication::failReception(TransactionFailure::Cause cause, UsbResult result,
                                     std::string detail)
{
    // A time-out or a stop that the waiting thread has found is the cause that counts.
    if (!isReceivedError())
        failure_.set({.cause = cause, .usbResult = result, .detail = std::move(detail)});
    setIsReceivedError(true);
}

}  // namespace nivor
