/// A camera behind the USB seam that does exactly what a test has written down.
#pragma once

#include "usb/UsbHost.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nivor::test {

/// A container as it travels, field by field.
ByteBuffer container(std::uint16_t type, std::uint16_t code, std::uint32_t transactionID,
                     const ByteBuffer& payload, std::optional<std::uint32_t> length = {});
ByteBuffer response(std::uint16_t code, std::uint32_t transactionID = 1);
ByteBuffer data(std::uint16_t operation, const ByteBuffer& payload,
                std::uint32_t transactionID = 1);
ByteBuffer parameters(const std::vector<std::uint32_t>& values);

/// One bulk-in transfer or failure; `bytes` end with a short packet.
struct BulkIn {
    ByteBuffer bytes{};
    UsbResult result = UsbResult::Success;
    unsigned afterWrites = 0;  ///< held back until that many containers were written
};

class ScriptedInterface : public UsbInterface {
public:
    UsbResult open() override;
    UsbResult close() override;
    UsbResult writePipe(ByteView bytes) override;
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override;

    void answer(BulkIn step);

    /// Answers the n-th container written from now on (1 = the next) with these transfers.
    void answerWrite(unsigned n, std::vector<ByteBuffer> transfers);

    std::vector<ByteBuffer> written() const;
    std::vector<std::size_t> readSizes() const;
    UsbTimeouts lastTimeouts() const;

    /// How long a read of a silent camera waits; the engine's 600 ms would be long for a test.
    std::chrono::milliseconds silence{10};
    UsbResult writeResult = UsbResult::Success;
    UsbResult openResult = UsbResult::Success;
    bool isOpen = false;
    int closeCount = 0;

    /// Called before each read, with no lock held.
    std::function<void()> onRead{};

    /// Called before each write, with no lock held; may raise.
    std::function<void()> onWrite{};

private:
    bool headIsDue() const;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<BulkIn> steps_;
    std::vector<ByteBuffer> written_;
    std::vector<std::size_t> readSizes_;
    UsbTimeouts timeouts_{};
};

/// What a scripted device was asked on its control pipe, and with which data stage.
struct ControlRecord {
    ControlRequest request;
    ByteBuffer sent;
};

class ScriptedDevice : public UsbDevice {
public:
    std::optional<std::string> serialNumber() override { return serial; }
    std::string productName() override { return {}; }
    UsbResult open() override;
    UsbResult close() override;
    UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) override;
    UsbResult setConfiguration(std::uint8_t value) override;
    UsbResult findInterface(const InterfaceTriple& triple,
                            std::shared_ptr<UsbInterface>& found) override;
    UsbResult controlRequest(ControlRequest& request) override;

    std::vector<ControlRecord> controlRecords() const;

    std::shared_ptr<ScriptedInterface> interface = std::make_shared<ScriptedInterface>();
    std::optional<std::string> serial = "SN-1";
    UsbResult openResult = UsbResult::Success;
    UsbResult configurationResult = UsbResult::Success;
    UsbResult findResult = UsbResult::Success;
    UsbResult setConfigurationResult = UsbResult::Success;
    std::vector<std::uint8_t> configurationsSet;
    bool isOpen = false;
    int closeCount = 0;

    /// The answer to each Get Device Status in turn; the last one serves all later ones.
    struct Status {
        ByteBuffer bytes{};
        UsbResult result = UsbResult::Success;
    };
    std::vector<Status> statuses;
    UsbResult cancelResult = UsbResult::Success;
    /// Called for each Cancel Request, with no lock held.
    std::function<void()> onCancel{};

private:
    mutable std::mutex mutex_;
    std::vector<ControlRecord> controlRecords_;
    std::size_t statusCount_ = 0;
};

/// A status reply: u16 length, u16 code.
ScriptedDevice::Status statusOf(std::uint16_t code);

class ScriptedHost : public UsbHost {
public:
    std::vector<StillImageInterface> stillImageInterfaces() override;

    /// Attaches a camera behind those attached before.
    std::shared_ptr<ScriptedDevice> attach(std::uint16_t vendorID = 0x1234,
                                           std::uint16_t productID = 0x0001);

    std::vector<StillImageInterface> attached;
    int searches = 0;
};

}  // namespace nivor::test
