/// A camera behind the USB seam that says what a fuzzer's input makes it say.
#pragma once

#include "FuzzedInput.h"
#include "usb/UsbHost.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nivor {
class PTPCommunication;
}

namespace nivor::fuzz {

/// What a read of the bulk-in pipe meets next. The numbers are those of the input; seeds use them.
enum class BulkInStep : std::uint8_t {
    Response,    ///< u16 code
    Data,        ///< u16 code, u16 payload size: a container that is what it says
    UntrueData,  ///< u32 length, u16 code, run: a container that is not
    Raw,         ///< u16 size, bytes: any transfer
    Empty,       ///< an empty packet
    Event,       ///< u16 code
    Timeout,     ///< nothing for one read
    Silence,     ///< nothing until the transaction has timed out; once an input
    Failure,     ///< u8 which
    Cancel,      ///< the user stops the transaction now
    Pieces,      ///< u16: from here on no read brings more than that; 0 = as much as there is
    Count
};

/// The bulk pipes. Each thread that uses them has a part of the input of its own, so that the order
/// in which the threads run makes no difference.
class FuzzedInterface : public UsbInterface {
public:
    FuzzedInterface(ByteView bulkIn, ByteView writes);

    /// Whose transactions these are; needed for `Silence` and `Cancel`.
    void setEngine(PTPCommunication& engine) { engine_ = &engine; }

    /// From here on every command is answered with one storage ID and OK.
    void behaveWell();

    /// The input has nothing more to say. While no transaction runs.
    [[nodiscard]] bool isExhausted() const
    {
        return bulkIn_.isOver() && offset_ == transfer_.size();
    }

    /// Bytes handed out so far.
    [[nodiscard]] std::size_t delivered() const { return delivered_; }

    UsbResult open() override { return UsbResult::Success; }
    UsbResult close() override { return UsbResult::Success; }
    UsbResult writePipe(ByteView bytes) override;
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override;

private:
    std::optional<UsbResult> takeStep();
    void prepare(BulkInStep step);
    void keepSilent();
    UsbResult cancel();
    UsbResult handOut(std::span<std::uint8_t> buffer, std::size_t& received);
    UsbResult answerWell(std::span<std::uint8_t> buffer, std::size_t& received,
                         const UsbTimeouts& timeouts);

    PTPCommunication* engine_ = nullptr;

    // Used by the thread that reads.
    FuzzedInput bulkIn_;
    ByteBuffer transfer_;
    std::size_t offset_ = 0;
    std::size_t mostAtOnce_ = 0;
    bool hasBeenSilent_ = false;

    // Used by the thread that writes.
    FuzzedInput writes_;

    std::atomic<std::size_t> delivered_ = 0;
    std::atomic<bool> isWellBehaved_ = false;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<ByteBuffer> answers_;
};

class FuzzedDevice : public UsbDevice {
public:
    FuzzedDevice(ByteView connection, ByteView control, std::shared_ptr<FuzzedInterface> interface);

    /// From here on nothing fails.
    void behaveWell();

    std::optional<std::string> serialNumber() override;
    std::string productName() override { return {}; }
    UsbResult open() override { return nextResult(); }
    UsbResult close() override { return UsbResult::Success; }
    UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) override;
    UsbResult setConfiguration(std::uint8_t value) override;
    UsbResult findInterface(const InterfaceTriple& triple,
                            std::shared_ptr<UsbInterface>& found) override;
    UsbResult controlRequest(ControlRequest& request) override;

    [[nodiscard]] const std::shared_ptr<FuzzedInterface>& interface() const { return interface_; }

private:
    UsbResult nextResult();

    const std::shared_ptr<FuzzedInterface> interface_;
    FuzzedInput connection_;  ///< used by the thread that connects

    std::mutex mutex_;
    FuzzedInput control_;
};

class FuzzedHost : public UsbHost {
public:
    explicit FuzzedHost(std::shared_ptr<FuzzedDevice> device)
        : device_(std::move(device))
    {
    }

    std::vector<StillImageInterface> stillImageInterfaces() override;

    bool isAttached = true;

private:
    std::shared_ptr<FuzzedDevice> device_;
};

}  // namespace nivor::fuzz
