/// A camera on the mocked bus, whose every answer a test decides.
#pragma once

#include "foundation/Bytes.h"
#include "support/MockedUsbBus.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

namespace nivor::test {

/// Plugged in from its construction to its destruction. libusb talks to it as to a real one:
///
///     MockedUsbBus bus;
///     MockedUsbCamera camera(bus);
///     camera.onBulkOut([&](ByteView command) { camera.send(answerTo(command)); });
///     LibusbHost host;
///
/// `send` and the answers may be called from any thread, plugging from one at a time.
class MockedUsbCamera {
public:
    explicit MockedUsbCamera(MockedUsbBus& bus, MockedUsbDescription description = {});

    /// A camera behind a wire that moves so many bytes a second, for measurements.
    MockedUsbCamera(MockedUsbBus& bus, MockedUsbDescription description, double bytesPerSecond);

    ~MockedUsbCamera();

    MockedUsbCamera(const MockedUsbCamera&) = delete;
    MockedUsbCamera& operator=(const MockedUsbCamera&) = delete;

    /// What the camera does with what the computer writes. Runs on the writing thread.
    void onBulkOut(EmulatedUsbfs::BulkOut answer);

    /// What it answers to control requests other than for its strings. None is a stall.
    void onControl(EmulatedUsbfs::Control answer);

    /// Puts bytes into the bulk-in pipe, in packets of the endpoint's size.
    void send(ByteBuffer bytes, WireEnd end = WireEnd::Marked);

    /// The next bulk-in request fails with that errno; EPIPE is a stall.
    void failIn(int error);

    void unplug();

    /// Plugs it in again, at that address.
    void plug(unsigned address);

    /// The kernel's side of the device file, for limits, failures and counters.
    [[nodiscard]] EmulatedUsbfs& usbfs() const { return *current(); }

    [[nodiscard]] const MockedUsbDescription& description() const { return description_; }
    [[nodiscard]] std::string deviceNode() const { return MockedUsbBus::deviceNode(description_); }

private:
    [[nodiscard]] std::shared_ptr<EmulatedUsbfs> current() const;
    void appear();

    MockedUsbBus& bus_;
    MockedUsbDescription description_;
    const double bytesPerSecond_;
    EmulatedUsbfs::BulkOut bulkOut_;
    EmulatedUsbfs::Control control_;
    std::string directory_;  // empty while unplugged
    mutable std::mutex mutex_;
    std::shared_ptr<EmulatedUsbfs> usbfs_;
};

}  // namespace nivor::test
