#include "FuzzedCamera.h"

#include "Require.h"
#include "codes/ContainerType.h"
#include "codes/ResponseCode.h"
#include "foundation/ByteWriter.h"
#include "ptp/PTPCommunication.h"

#include <array>
#include <chrono>
#include <thread>
#include <utility>

namespace nivor::fuzz {
namespace {

using namespace std::chrono_literals;

// Long enough for a machine with many other things to do.
constexpr auto longestWait = 20s;

ByteBuffer container(std::uint32_t length, ContainerType type, std::uint16_t code, ByteView payload)
{
    ByteBuffer bytes;
    appendLittleEndian(bytes, length);
    appendLittleEndian(bytes, static_cast<std::uint16_t>(type));
    appendLittleEndian(bytes, code);
    appendLittleEndian(bytes, std::uint32_t{1});
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

ByteBuffer container(ContainerType type, std::uint16_t code, ByteView payload = {})
{
    return container(static_cast<std::uint32_t>(12 + payload.size()), type, code, payload);
}

UsbResult failure(std::size_t which)
{
    static constexpr std::array all{UsbResult::Error,   UsbResult::NoMemory,   UsbResult::NoDevice,
                                    UsbResult::IOError, UsbResult::Overrun,    UsbResult::Aborted,
                                    UsbResult::NotOpen, UsbResult::PipeStalled};
    return all[which % all.size()];
}

template <typename Condition> void waitUntil(Condition&& isMet, const char* promise)
{
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (!isMet()) {
        require(std::chrono::steady_clock::now() < end, promise);
        std::this_thread::yield();
    }
}

}  // namespace

FuzzedInterface::FuzzedInterface(ByteView bulkIn, ByteView writes)
    : bulkIn_(bulkIn)
    , writes_(writes)
{
}

void FuzzedInterface::behaveWell()
{
    const std::lock_guard guard(mutex_);
    answers_.clear();
    isWellBehaved_ = true;
}

UsbResult FuzzedInterface::writePipe(ByteView bytes)
{
    require(bytes.size() >= 12, "what is written is a container");
    if (!isWellBehaved_) {
        const std::uint8_t choice = writes_.u8();
        return choice < 0xE0 ? UsbResult::Success : failure(choice);
    }
    const std::array<std::uint8_t, 8> oneStorage{1, 0, 0, 0, 1, 0, 1, 0};
    const std::lock_guard guard(mutex_);
    // Taken from the back.
    answers_ = {container(ContainerType::Response, static_cast<std::uint16_t>(ResponseCode::OK)),
                container(ContainerType::Data, 0x1004, oneStorage)};
    changed_.notify_all();
    return UsbResult::Success;
}

UsbResult FuzzedInterface::readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                                    const UsbTimeouts& timeouts)
{
    received = 0;
    require(!buffer.empty(), "there is room for what is read");
    if (isWellBehaved_)
        return answerWell(buffer, received, timeouts);
    while (offset_ == transfer_.size()) {
        if (const std::optional<UsbResult> result = takeStep())
            return *result;
    }
    return handOut(buffer, received);
}

// Carries the next step out; a result, when it ends the read without a byte.
std::optional<UsbResult> FuzzedInterface::takeStep()
{
    if (bulkIn_.isOver())
        return UsbResult::NoDevice;
    transfer_.clear();
    offset_ = 0;
    const auto step =
        static_cast<BulkInStep>(bulkIn_.choice(static_cast<std::size_t>(BulkInStep::Count)));
    switch (step) {
    case BulkInStep::Empty:
        return UsbResult::Success;
    case BulkInStep::Timeout:
        return UsbResult::TransactionTimeout;
    case BulkInStep::Silence:
        if (std::exchange(hasBeenSilent_, true))
            return UsbResult::TransactionTimeout;
        keepSilent();
        return UsbResult::TransactionTimeout;
    case BulkInStep::Failure:
        return failure(bulkIn_.u8());
    case BulkInStep::Cancel:
        return cancel();
    case BulkInStep::Pieces:
        mostAtOnce_ = bulkIn_.u16();
        return std::nullopt;
    default:
        prepare(step);
        // A transfer without bytes is an empty packet.
        return transfer_.empty() ? std::optional(UsbResult::Success) : std::nullopt;
    }
}

void FuzzedInterface::prepare(BulkInStep step)
{
    if (step == BulkInStep::Raw) {
        const ByteView bytes = bulkIn_.bytes(bulkIn_.u16());
        transfer_.assign(bytes.begin(), bytes.end());
        return;
    }
    if (step == BulkInStep::UntrueData) {
        const std::uint32_t length = bulkIn_.u32();
        const std::uint16_t code = bulkIn_.u16();
        transfer_ = container(length, ContainerType::Data, code, bulkIn_.run());
        return;
    }
    const std::uint16_t code = bulkIn_.u16();
    if (step == BulkInStep::Response)
        transfer_ = container(ContainerType::Response, code);
    else if (step == BulkInStep::Event)
        transfer_ = container(ContainerType::Event, code);
    else
        transfer_ = container(ContainerType::Data, code, ByteBuffer(bulkIn_.u16(), 0xA5));
}

void FuzzedInterface::keepSilent()
{
    const auto isOver = [this] {
        // As if the waiting thread had counted a second more: inputs are many.
        engine_->addToTimeoutTimer(1000);
        return engine_->isReceivedError();
    };
    waitUntil(isOver, "a silent transaction ends");
}

UsbResult FuzzedInterface::cancel()
{
    require(!engine_->cancelTransaction(), "a stop always answers the same");
    // The rest of the input is for the next transaction: the waiting thread ends this one first.
    waitUntil([this] { return !engine_->isStopCopyFlg() || engine_->isReceivedError(); },
              "a confirmed stop ends the transaction");
    return UsbResult::TransactionTimeout;
}

UsbResult FuzzedInterface::handOut(std::span<std::uint8_t> buffer, std::size_t& received)
{
    std::size_t count = std::min(transfer_.size() - offset_, buffer.size());
    if (mostAtOnce_ > 0)
        count = std::min(count, mostAtOnce_);
    std::copy_n(transfer_.begin() + static_cast<std::ptrdiff_t>(offset_), count, buffer.begin());
    offset_ += count;
    received = count;
    delivered_ += count;
    return UsbResult::Success;
}

UsbResult FuzzedInterface::answerWell(std::span<std::uint8_t> buffer, std::size_t& received,
                                      const UsbTimeouts& timeouts)
{
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, timeouts.noData, [this] { return !answers_.empty(); }))
        return UsbResult::TransactionTimeout;
    const ByteBuffer answer = answers_.back();
    answers_.pop_back();
    std::copy(answer.begin(), answer.end(), buffer.begin());
    received = answer.size();
    return UsbResult::Success;
}

FuzzedDevice::FuzzedDevice(ByteView connection, ByteView control,
                           std::shared_ptr<FuzzedInterface> interface)
    : interface_(std::move(interface))
    , connection_(connection)
    , control_(control)
{
}

void FuzzedDevice::behaveWell()
{
    const std::lock_guard guard(mutex_);
    connection_ = FuzzedInput({});
    control_ = FuzzedInput({});
}

UsbResult FuzzedDevice::nextResult()
{
    const std::uint8_t choice = connection_.u8();
    return choice < 0xC0 ? UsbResult::Success : failure(choice);
}

std::optional<std::string> FuzzedDevice::serialNumber()
{
    const std::uint8_t choice = connection_.u8();
    if (choice == 0xFF)
        return std::nullopt;
    // Around the longest one that counts.
    return std::string(choice >= 0xF0 ? 512U + choice - 0xF8 : choice, 'S');
}

UsbResult FuzzedDevice::configurationValue(std::uint8_t /*index*/, std::uint8_t& value)
{
    value = 1;
    return nextResult();
}

UsbResult FuzzedDevice::setConfiguration(std::uint8_t /*value*/)
{
    return nextResult();
}

UsbResult FuzzedDevice::findInterface(const InterfaceTriple& triple,
                                      std::shared_ptr<UsbInterface>& found)
{
    require(triple == stillImageTriple, "the interface is that of a still camera");
    found = interface_;
    return nextResult();
}

UsbResult FuzzedDevice::controlRequest(ControlRequest& request)
{
    const std::lock_guard guard(mutex_);
    request.transferred = 0;
    const std::uint8_t choice = control_.u8();
    if (choice >= 0xE0)
        return failure(choice);
    if (request.bmRequestType != classRequestIn)
        return UsbResult::Success;
    // A status: its length, then OK unless the input has other bytes.
    ByteBuffer status{4, 0, 0x01, 0x20};
    if (choice >= 0x80) {
        const ByteView bytes = control_.bytes(choice % 6);
        status.assign(bytes.begin(), bytes.end());
    }
    request.transferred = std::min(status.size(), request.data.size());
    std::copy_n(status.begin(), request.transferred, request.data.begin());
    return UsbResult::Success;
}

std::vector<StillImageInterface> FuzzedHost::stillImageInterfaces()
{
    if (!isAttached)
        return {};
    return {{.vendorID = 0x1234, .productID = 1, .location = {}, .device = device_}};
}

}  // namespace nivor::fuzz
