#include "support/ScriptedCamera.h"

#include "codes/ClassRequest.h"
#include "foundation/ByteWriter.h"

#include <algorithm>

namespace nivor::test {

ByteBuffer container(std::uint16_t type, std::uint16_t code, std::uint32_t transactionID,
                     const ByteBuffer& payload, std::optional<std::uint32_t> length)
{
    ByteBuffer bytes;
    appendLittleEndian(bytes, length.value_or(static_cast<std::uint32_t>(12 + payload.size())));
    appendLittleEndian(bytes, type);
    appendLittleEndian(bytes, code);
    appendLittleEndian(bytes, transactionID);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

ByteBuffer response(std::uint16_t code, std::uint32_t transactionID)
{
    return container(3, code, transactionID, {});
}

ByteBuffer data(std::uint16_t operation, const ByteBuffer& payload, std::uint32_t transactionID)
{
    return container(2, operation, transactionID, payload);
}

ByteBuffer parameters(const std::vector<std::uint32_t>& values)
{
    ByteBuffer bytes;
    for (const std::uint32_t value : values)
        appendLittleEndian(bytes, value);
    return bytes;
}

UsbResult ScriptedInterface::open()
{
    isOpen = succeeded(openResult);
    return openResult;
}

UsbResult ScriptedInterface::close()
{
    isOpen = false;
    ++closeCount;
    return UsbResult::Success;
}

UsbResult ScriptedInterface::writePipe(ByteView bytes)
{
    if (onWrite)
        onWrite();
    const std::lock_guard guard(mutex_);
    written_.emplace_back(bytes.begin(), bytes.end());
    changed_.notify_all();
    return writeResult;
}

UsbResult ScriptedInterface::readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                                      const UsbTimeouts& timeouts)
{
    if (onRead)
        onRead();
    std::unique_lock guard(mutex_);
    readSizes_.push_back(buffer.size());
    timeouts_ = timeouts;
    received = 0;
    if (!changed_.wait_for(guard, silence, [this] { return headIsDue(); }))
        return UsbResult::TransactionTimeout;
    BulkIn& head = steps_.front();
    received = std::min(buffer.size(), head.bytes.size());
    std::copy_n(head.bytes.begin(), received, buffer.begin());
    const UsbResult result = head.result;
    if (received < head.bytes.size())
        head.bytes.erase(head.bytes.begin(),
                         head.bytes.begin() + static_cast<std::ptrdiff_t>(received));
    else
        steps_.pop_front();
    return result;
}

bool ScriptedInterface::headIsDue() const
{
    return !steps_.empty() && written_.size() >= steps_.front().afterWrites;
}

void ScriptedInterface::answer(BulkIn step)
{
    const std::lock_guard guard(mutex_);
    steps_.push_back(std::move(step));
    changed_.notify_all();
}

void ScriptedInterface::answerWrite(unsigned n, std::vector<ByteBuffer> transfers)
{
    const std::lock_guard guard(mutex_);
    for (ByteBuffer& bytes : transfers)
        steps_.push_back(
            {.bytes = std::move(bytes), .afterWrites = static_cast<unsigned>(written_.size()) + n});
    changed_.notify_all();
}

std::vector<ByteBuffer> ScriptedInterface::written() const
{
    const std::lock_guard guard(mutex_);
    return written_;
}

std::vector<std::size_t> ScriptedInterface::readSizes() const
{
    const std::lock_guard guard(mutex_);
    return readSizes_;
}

UsbTimeouts ScriptedInterface::lastTimeouts() const
{
    const std::lock_guard guard(mutex_);
    return timeouts_;
}

UsbResult ScriptedDevice::open()
{
    isOpen = succeeded(openResult);
    return openResult;
}

UsbResult ScriptedDevice::close()
{
    isOpen = false;
    ++closeCount;
    return UsbResult::Success;
}

UsbResult ScriptedDevice::configurationValue(std::uint8_t /*index*/, std::uint8_t& value)
{
    value = 1;
    return configurationResult;
}

UsbResult ScriptedDevice::setConfiguration(std::uint8_t value)
{
    configurationsSet.push_back(value);
    return setConfigurationResult;
}

UsbResult ScriptedDevice::findInterface(const InterfaceTriple& triple,
                                        std::shared_ptr<UsbInterface>& found)
{
    if (triple != stillImageTriple)
        return UsbResult::NotFound;
    if (succeeded(findResult))
        found = interface;
    return findResult;
}

UsbResult ScriptedDevice::controlRequest(ControlRequest& request)
{
    const bool isCancel =
        request.bRequest == static_cast<std::uint8_t>(ClassRequest::CancelRequest);
    UsbResult result = cancelResult;
    {
        const std::lock_guard guard(mutex_);
        ControlRecord record{.request = request, .sent = {}};
        if (isCancel) {
            record.sent.assign(request.data.begin(), request.data.end());
            request.transferred = request.data.size();
        } else if (!statuses.empty()) {
            const Status& status = statuses[std::min(statusCount_++, statuses.size() - 1)];
            request.transferred = std::min(status.bytes.size(), request.data.size());
            std::copy_n(status.bytes.begin(), request.transferred, request.data.begin());
            result = status.result;
        }
        controlRecords_.push_back(std::move(record));
    }
    if (isCancel && onCancel)
        onCancel();
    return result;
}

std::vector<ControlRecord> ScriptedDevice::controlRecords() const
{
    const std::lock_guard guard(mutex_);
    return controlRecords_;
}

ScriptedDevice::Status statusOf(std::uint16_t code)
{
    ScriptedDevice::Status status;
    appendLittleEndian(status.bytes, std::uint16_t{4});
    appendLittleEndian(status.bytes, code);
    return status;
}

std::vector<StillImageInterface> ScriptedHost::stillImageInterfaces()
{
    ++searches;
    return attached;
}

std::shared_ptr<ScriptedDevice> ScriptedHost::attach(std::uint16_t vendorID,
                                                     std::uint16_t productID)
{
    auto device = std::make_shared<ScriptedDevice>();
    attached.push_back({.vendorID = vendorID,
                        .productID = productID,
                        .location = {.bus = 1, .address = 5, .speed = {}, .deviceNode = {}},
                        .device = device});
    return device;
}

}  // namespace nivor::test
