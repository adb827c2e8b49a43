/// A mocked camera with its interface opened through the real libusb.
#pragma once

#include "support/MockedUsbCamera.h"
#include "usb/LibusbHost.h"
#include "usb/UsbInterface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace nivor {

/// How GoogleTest shows a result.
inline void PrintTo(UsbResult result, std::ostream* out)
{
    *out << toText(result);
}

}  // namespace nivor

namespace nivor::test {

using namespace std::chrono_literals;

/// The bytes 0, 1, 2, … of a run that starts somewhere.
inline ByteBuffer numberedBytes(std::size_t count, std::size_t first = 0)
{
    ByteBuffer bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>((first + i) * 31 + ((first + i) >> 8));
    return bytes;
}

/// Waits for what another thread is about to do; false when it does not happen in time.
template <typename Condition>
bool happens(Condition condition, std::chrono::milliseconds within = 5s)
{
    const auto end = std::chrono::steady_clock::now() + within;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

struct ReadResult {
    UsbResult result;
    ByteBuffer bytes;

    friend bool operator==(const ReadResult&, const ReadResult&) = default;
};

class ConnectedCamera {
public:
    explicit ConnectedCamera(MockedUsbDescription description = {}, double bytesPerSecond = 0)
        : camera(bus, std::move(description), bytesPerSecond)
        , host([this](std::string_view line) { notes.emplace_back(line); })
    {
    }

    /// Opens the first camera and its interface; the first failure ends that.
    UsbResult open()
    {
        if (const UsbResult found = find(); !succeeded(found))
            return found;
        if (const UsbResult opened = device->open(); !succeeded(opened))
            return opened;
        const UsbResult found = device->findInterface(stillImageTriple, interface);
        return succeeded(found) ? interface->open() : found;
    }

    UsbResult find()
    {
        const auto cameras = host.stillImageInterfaces();
        if (cameras.empty())
            return UsbResult::NoDevice;
        device = cameras.front().device;
        return UsbResult::Success;
    }

    ReadResult read(std::size_t size, std::chrono::milliseconds noData = 2000ms,
                    std::chrono::milliseconds completion = 4000ms)
    {
        ByteBuffer buffer(size);
        std::size_t received = size;
        const UsbResult result = interface->readPipe(buffer, received, {noData, completion});
        buffer.resize(received);
        return {result, buffer};
    }

    UsbResult cancelRequest()
    {
        ByteBuffer data{0x01, 0x40, 7, 0, 0, 0};
        return control(0x21, 0x64, data);
    }

    UsbResult deviceStatus()
    {
        ByteBuffer data(128);
        return control(0xA1, 0x67, data);
    }

    UsbResult control(std::uint8_t type, std::uint8_t code, ByteBuffer& data)
    {
        ControlRequest request{.bmRequestType = type,
                               .bRequest = code,
                               .wValue = 0,
                               .wIndex = 0,
                               .data = data,
                               .timeouts = {2000ms, 2000ms}};
        const UsbResult result = device->controlRequest(request);
        transferred = request.transferred;
        return result;
    }

    std::vector<std::string> notes;
    MockedUsbBus bus;
    MockedUsbCamera camera;
    LibusbHost host;
    std::shared_ptr<UsbDevice> device;
    std::shared_ptr<UsbInterface> interface;
    std::size_t transferred = 0;  ///< of the last control request
};

inline void PrintTo(const ReadResult& read, std::ostream* out)
{
    *out << toText(read.result) << " with " << read.bytes.size() << " bytes";
}

/// A PTP device status block (USB Still Image class, 5.2.4).
inline ByteBuffer deviceStatusBlock(std::uint16_t code)
{
    return {4, 0, static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(code >> 8)};
}

}  // namespace nivor::test
