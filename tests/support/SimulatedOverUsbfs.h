/// A simulated camera on the mocked bus, so that the real libusb talks to it.
#pragma once

#include "simulator/SimulatedCamera.h"
#include "support/MockedUsbCamera.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

namespace nivor::test {

/// Plugged in from its construction on, until it is unplugged, leaves by a fault or is destroyed:
///
///     MockedUsbBus bus;
///     SimulatedOverUsbfs camera(bus, std::make_shared<SimulatedCamera>(card, settings));
///     LibusbHost host;
///
/// Faults of operations act as they do behind the seam itself, down to the packet. Faults of
/// `UsbStep` don't: what fails here is what `usbfs()` is told to fail. The packet size is that of
/// `description`; the simulated camera's own must be the same.
class SimulatedOverUsbfs {
public:
    SimulatedOverUsbfs(MockedUsbBus& bus, std::shared_ptr<SimulatedCamera> camera,
                       MockedUsbDescription description = {});
    ~SimulatedOverUsbfs();

    SimulatedOverUsbfs(const SimulatedOverUsbfs&) = delete;
    SimulatedOverUsbfs& operator=(const SimulatedOverUsbfs&) = delete;

    [[nodiscard]] SimulatedCamera& camera() const { return *camera_; }
    [[nodiscard]] EmulatedUsbfs& usbfs() const { return mocked_.usbfs(); }
    [[nodiscard]] std::string deviceNode() const { return mocked_.deviceNode(); }

    /// Whether it is still on the bus, as far as the computer can tell.
    [[nodiscard]] bool isPlugged() const;

    void unplug();

    /// Plugs it in again, at another address.
    void plug();

private:
    void attach();
    void detach();
    void carry(const std::shared_ptr<BulkInPipe>& pipe);
    void passOn(const BulkInPipe& pipe, ByteBuffer bytes, bool isWhole);
    void takeBack(const BulkInPipe& pipe);
    [[nodiscard]] std::shared_ptr<BulkInPipe> pipe() const;
    std::optional<ByteBuffer> control(const MockedSetup& setup, ByteView data);

    const std::shared_ptr<SimulatedCamera> camera_;
    MockedUsbCamera mocked_;
    mutable std::mutex mutex_;
    std::shared_ptr<BulkInPipe> pipe_;
    bool plugged_ = false;
    std::atomic<std::uint64_t> bytesPassedOn_ = 0;  // of this attachment
    std::thread carrier_;                           // from the simulated pipe to the mocked wire
};

}  // namespace nivor::test
