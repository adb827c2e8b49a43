#include "support/SimulatedOverUsbfs.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace nivor::test {

namespace {

using namespace std::chrono_literals;

// Whole packets of every size that a bulk endpoint may have.
constexpr std::size_t pieceSize = 64 * 1024;

// Longer than any pause within one transfer of a test's camera.
constexpr UsbTimeouts patience{.noData = 1h, .completion = 1h};

MockedUsbDescription identified(MockedUsbDescription description, const CameraIdentity& identity)
{
    description.vendorID = identity.vendorID;
    description.productID = identity.productID;
    description.serialNumber = identity.serialNumber;
    return description;
}

/// Waits for what the computer's side is about to do; gives up rather than hang a test.
template <typename Condition> void waitFor(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + 2s;
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(1ms);
}

}  // namespace

SimulatedOverUsbfs::SimulatedOverUsbfs(MockedUsbBus& bus, std::shared_ptr<SimulatedCamera> camera,
                                       MockedUsbDescription description)
    : camera_(std::move(camera))
    , mocked_(bus, identified(std::move(description), camera_->identity()))
{
    mocked_.onBulkOut([this](ByteView bytes) {
        if (const auto attachment = pipe())
            camera_->receive(bytes, *attachment);
    });
    mocked_.onControl(
        [this](const MockedSetup& setup, ByteView data) { return control(setup, data); });
    attach();
}

SimulatedOverUsbfs::~SimulatedOverUsbfs()
{
    unplug();
}

std::shared_ptr<BulkInPipe> SimulatedOverUsbfs::pipe() const
{
    const std::lock_guard guard(mutex_);
    return pipe_;
}

bool SimulatedOverUsbfs::isPlugged() const
{
    const std::lock_guard guard(mutex_);
    return plugged_;
}

void SimulatedOverUsbfs::attach()
{
    auto attachment = camera_->plugIn();
    {
        const std::lock_guard guard(mutex_);
        pipe_ = attachment;
        plugged_ = true;
    }
    bytesPassedOn_ = 0;
    carrier_ = std::thread([this, attachment] { carry(attachment); });
}

void SimulatedOverUsbfs::unplug()
{
    if (const auto attachment = pipe())
        attachment->disconnect();
    if (carrier_.joinable())
        carrier_.join();
}

void SimulatedOverUsbfs::plug()
{
    unplug();
    mocked_.plug(mocked_.description().address + 1);
    attach();
}

void SimulatedOverUsbfs::carry(const std::shared_ptr<BulkInPipe>& pipe)
{
    for (;;) {
        // The camera keeps what the computer does not take, so that a cancel can take it back.
        while (usbfs().unsentBytes() > 0 && pipe->isConnected())
            std::this_thread::sleep_for(100us);
        ByteBuffer bytes(pieceSize);
        std::size_t received = 0;
        const UsbResult result = pipe->read(bytes, received, patience);
        if (result == UsbResult::PipeStalled) {
            const std::size_t cleared = usbfs().counters().clearedHalts;
            mocked_.failIn(EPIPE);
            // A pipe that is halted for good fails once for each time that it is cleared.
            waitFor(
                [&] { return usbfs().counters().clearedHalts > cleared || !pipe->isConnected(); });
            continue;
        }
        // So ends a read once a cancel is confirmed.
        if (result == UsbResult::TransactionTimeout)
            continue;
        if (!succeeded(result))
            break;
        bytes.resize(received);
        passOn(*pipe, std::move(bytes), received < pieceSize);
        bytesPassedOn_ += received;
    }
    // What has been sent has arrived before the device is gone.
    waitFor([&] { return usbfs().unsentBytes() == 0 || usbfs().waitingForIn() == 0; });
    mocked_.unplug();
    const std::lock_guard guard(mutex_);
    plugged_ = false;
}

/// `isWhole`: the transfer is over, with an empty packet where its packets are all whole. One that
/// a leaving camera breaks off is not.
void SimulatedOverUsbfs::passOn(const BulkInPipe& pipe, ByteBuffer bytes, bool isWhole)
{
    const bool ends = isWhole && pipe.isConnected();
    mocked_.send(std::move(bytes), ends ? WireEnd::Marked : WireEnd::Open);
}

/// Of a cancelled transaction nothing comes any more once the camera has said so.
void SimulatedOverUsbfs::takeBack(const BulkInPipe& pipe)
{
    waitFor([&] { return bytesPassedOn_ == pipe.bytesSent() || !pipe.isConnected(); });
    usbfs().forgetIn();
}

std::optional<ByteBuffer> SimulatedOverUsbfs::control(const MockedSetup& setup, ByteView data)
{
    const auto attachment = pipe();
    if (!attachment)
        return std::nullopt;
    const bool isIn = (setup.bmRequestType & 0x80) != 0;
    ByteBuffer bytes = isIn ? ByteBuffer(setup.wLength) : ByteBuffer(data.begin(), data.end());
    ControlRequest request{.bmRequestType = setup.bmRequestType,
                           .bRequest = setup.bRequest,
                           .wValue = setup.wValue,
                           .wIndex = setup.wIndex,
                           .data = bytes};
    if (!succeeded(camera_->control(request, *attachment)))
        return std::nullopt;
    if (attachment->isSettled())
        takeBack(*attachment);
    bytes.resize(isIn ? request.transferred : 0);
    return bytes;
}

}  // namespace nivor::test
