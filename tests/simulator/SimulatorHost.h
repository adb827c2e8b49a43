/// A host that talks to one simulated camera in raw containers.
#pragma once

#include "codes/ClassRequest.h"
#include "codes/ContainerType.h"
#include "codes/OperationCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"
#include "simulator/SimulatedHost.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nivor::test {

inline constexpr UsbTimeouts patient{std::chrono::milliseconds(5000),
                                     std::chrono::milliseconds(10000)};
inline constexpr UsbTimeouts brief{std::chrono::milliseconds(30), std::chrono::milliseconds(60)};
inline constexpr std::uint32_t storage = 0x00010001;

inline ByteBuffer container(std::uint32_t length, std::uint16_t type, std::uint16_t code,
                            std::uint32_t transactionID,
                            std::initializer_list<std::uint32_t> parameters = {})
{
    ByteBuffer bytes;
    appendLittleEndian(bytes, length);
    appendLittleEndian(bytes, type);
    appendLittleEndian(bytes, code);
    appendLittleEndian(bytes, transactionID);
    for (const std::uint32_t parameter : parameters)
        appendLittleEndian(bytes, parameter);
    return bytes;
}

/// What one read brought.
struct Received {
    UsbResult result = UsbResult::Error;
    ByteBuffer bytes{};

    [[nodiscard]] std::uint32_t length() const { return ByteReader(bytes, 0).u32(); }
    [[nodiscard]] std::uint16_t type() const { return ByteReader(bytes, 4).u16(); }
    [[nodiscard]] std::uint16_t code() const { return ByteReader(bytes, 6).u16(); }
    [[nodiscard]] std::uint32_t transactionID() const { return ByteReader(bytes, 8).u32(); }
    [[nodiscard]] std::uint32_t parameter(std::size_t index) const
    {
        return ByteReader(bytes, 12 + 4 * index).u32();
    }
    [[nodiscard]] ByteView payload() const
    {
        return ByteView(bytes).subspan(std::min<std::size_t>(bytes.size(), 12));
    }
    [[nodiscard]] bool isData() const { return type() == 2; }
    [[nodiscard]] bool isResponse(ResponseCode expected = ResponseCode::OK) const
    {
        return type() == 3 && code() == static_cast<std::uint16_t>(expected);
    }
};

class SimulatorHost {
public:
    explicit SimulatorHost(std::shared_ptr<Card> card, CameraSettings settings = {})
        : camera(std::make_shared<SimulatedCamera>(std::move(card), std::move(settings)))
    {
        attach();
    }

    void attach()
    {
        usb.attach(camera);
        device = usb.stillImageInterfaces().back().device;
        EXPECT_EQ(device->findInterface(stillImageTriple, interface), UsbResult::Success);
        EXPECT_EQ(device->open(), UsbResult::Success);
        EXPECT_EQ(interface->open(), UsbResult::Success);
    }

    /// Sends a command with the next transaction ID.
    UsbResult send(OperationCode operation, std::initializer_list<std::uint32_t> parameters = {})
    {
        const auto length = static_cast<std::uint32_t>(12 + 4 * parameters.size());
        return interface->writePipe(container(length, 1, static_cast<std::uint16_t>(operation),
                                              ++transactionID, parameters));
    }

    Received read(std::size_t size = 5120, const UsbTimeouts& timeouts = patient) const
    {
        Received received{.bytes = ByteBuffer(size, 0xEE)};
        std::size_t count = 99;
        received.result = interface->readPipe(received.bytes, count, timeouts);
        received.bytes.resize(count);
        return received;
    }

    /// Sends a command without data phase, or one that is refused.
    Received respond(OperationCode operation, std::initializer_list<std::uint32_t> parameters = {})
    {
        EXPECT_EQ(send(operation, parameters), UsbResult::Success);
        return read();
    }

    /// Sends a command with a data phase and expects OK behind it.
    ByteBuffer fetch(OperationCode operation, std::initializer_list<std::uint32_t> parameters = {},
                     std::size_t size = std::size_t{1} << 20)
    {
        EXPECT_EQ(send(operation, parameters), UsbResult::Success);
        const Received data = read(size);
        EXPECT_EQ(data.result, UsbResult::Success);
        EXPECT_TRUE(data.isData());
        EXPECT_TRUE(read().isResponse());
        return ByteBuffer(data.payload().begin(), data.payload().end());
    }

    void openSession() { EXPECT_TRUE(respond(OperationCode::OpenSession, {1}).isResponse()); }

    std::vector<std::uint32_t> handles(std::uint32_t format = 0, std::uint32_t association = 0)
    {
        const ByteBuffer data =
            fetch(OperationCode::GetObjectHandles, {storage, format, association});
        ByteReader reader(data);
        std::vector<std::uint32_t> list(reader.u32());
        for (std::uint32_t& handle : list)
            handle = reader.u32();
        EXPECT_TRUE(reader.ok());
        return list;
    }

    UsbResult cancel(std::uint32_t transaction) const
    {
        ByteBuffer data;
        appendLittleEndian(data, std::uint16_t{0x4001});  // cancellation code
        appendLittleEndian(data, transaction);
        ControlRequest request{.bmRequestType = classRequestOut,
                               .bRequest = static_cast<std::uint8_t>(ClassRequest::CancelRequest),
                               .data = data};
        return device->controlRequest(request);
    }

    /// The bytes of Get Device Status.
    ByteBuffer status(UsbResult expected = UsbResult::Success) const
    {
        ByteBuffer data(128);
        ControlRequest request{.bmRequestType = classRequestIn,
                               .bRequest = static_cast<std::uint8_t>(ClassRequest::GetDeviceStatus),
                               .data = data};
        EXPECT_EQ(device->controlRequest(request), expected);
        data.resize(request.transferred);
        return data;
    }

    SimulatedHost usb;
    std::shared_ptr<SimulatedCamera> camera;
    std::shared_ptr<UsbDevice> device;
    std::shared_ptr<UsbInterface> interface;
    std::uint32_t transactionID = 0;
};

}  // namespace nivor::test
