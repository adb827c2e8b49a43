/// A camera that answers from memory at once, so that what is measured is the engine.
#pragma once

#include "usb/UsbHost.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace nivor::bench {

/// Answers GetObjectInfo with one fixed dataset, GetObject with `objectSize` bytes of a fixed
/// block, and everything else with OK. Reads never end short before a container ends.
class InMemoryInterface : public UsbInterface {
public:
    explicit InMemoryInterface(std::uint64_t objectSize);

    UsbResult open() override { return UsbResult::Success; }
    UsbResult close() override { return UsbResult::Success; }
    UsbResult writePipe(ByteView bytes) override;
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override;

private:
    std::size_t produce(std::span<std::uint8_t> buffer);

    std::mutex mutex_;
    std::condition_variable commanded_;
    std::atomic<bool> isAnswerReady_{false};
    ByteBuffer head_;             ///< first bytes of the data container
    std::uint64_t bodyLeft_ = 0;  ///< object bytes behind the head
    ByteBuffer response_;
    std::size_t headOffset_ = 0;
    std::uint64_t objectSize_;
    ByteBuffer block_;
};

class InMemoryDevice : public UsbDevice {
public:
    explicit InMemoryDevice(std::uint64_t objectSize)
        : interface_(std::make_shared<InMemoryInterface>(objectSize))
    {
    }

    std::optional<std::string> serialNumber() override { return "BENCH"; }
    std::string productName() override { return {}; }
    UsbResult open() override { return UsbResult::Success; }
    UsbResult close() override { return UsbResult::Success; }
    UsbResult configurationValue(std::uint8_t, std::uint8_t& value) override
    {
        value = 1;
        return UsbResult::Success;
    }
    UsbResult setConfiguration(std::uint8_t) override { return UsbResult::Success; }
    UsbResult findInterface(const InterfaceTriple&, std::shared_ptr<UsbInterface>& found) override
    {
        found = interface_;
        return UsbResult::Success;
    }
    UsbResult controlRequest(ControlRequest&) override { return UsbResult::Success; }

private:
    std::shared_ptr<InMemoryInterface> interface_;
};

class InMemoryHost : public UsbHost {
public:
    explicit InMemoryHost(std::uint64_t objectSize)
        : device_(std::make_shared<InMemoryDevice>(objectSize))
    {
    }

    std::vector<StillImageInterface> stillImageInterfaces() override
    {
        return {{.vendorID = 1, .productID = 1, .location = {}, .device = device_}};
    }

private:
    std::shared_ptr<InMemoryDevice> device_;
};

}  // namespace nivor::bench
