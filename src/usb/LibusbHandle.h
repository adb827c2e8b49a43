/// An opened libusb device, closed again when its last user lets go.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "foundation/Bytes.h"
#include "usb/ControlRequest.h"
#include "usb/UsbEventThread.h"
#include "usb/UsbResult.h"

#include <libusb.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

namespace nivor {

class BulkInQueue;

/// As long as it exists a thread of its own handles libusb's events. The device itself and its
/// opened interface share it, so that a control request which runs while another thread closes
/// them still has a device to run on. Any thread.
class LibusbHandle {
public:
    /// `gone` is the device's own flag, set as soon as an operation finds the device has left.
    static UsbResult open(std::shared_ptr<libusb_context> context, libusb_device* device,
                          std::shared_ptr<std::atomic<bool>> gone,
                          std::shared_ptr<LibusbHandle>& opened);

    ~LibusbHandle();

    LibusbHandle(const LibusbHandle&) = delete;
    LibusbHandle& operator=(const LibusbHandle&) = delete;

    [[nodiscard]] libusb_device_handle* raw() const { return handle_; }
    [[nodiscard]] const std::shared_ptr<std::atomic<bool>>& goneFlag() const { return gone_; }

    /// The result for a libusb code; notes when it says that the device has left.
    UsbResult resultOf(int libusbError);

    /// Runs a request to its end. When it confirms a cancelled transaction, the reader throws
    /// away what the transaction has left behind.
    UsbResult controlRequest(ControlRequest& request);

    /// Writes all bytes in one transfer, waiting at most `writeLimit` for the device.
    UsbResult write(std::uint8_t endpoint, ByteView bytes);

    /// The queue that reads this device's bulk-in pipe, or none.
    void setReader(std::weak_ptr<BulkInQueue> reader);

    /// Wakes the reader of a device that has left.
    void deviceLeft();

    /// The longest a write waits. A camera that writes to its card may keep the
    /// computer waiting for a while; one that takes nothing for so long has hung.
    static constexpr std::chrono::milliseconds writeLimit{5000};

private:
    LibusbHandle(std::shared_ptr<libusb_context> context, libusb_device_handle* handle,
                 std::shared_ptr<std::atomic<bool>> gone);

    UsbResult noted(UsbResult result);
    void watchForCancel(const ControlRequest& request);
    std::shared_ptr<BulkInQueue> reader();

    const std::shared_ptr<libusb_context> context_;
    libusb_device_handle* const handle_;
    const std::shared_ptr<std::atomic<bool>> gone_;
    std::unique_ptr<UsbEventThread> events_;
    std::mutex readerMutex_;
    std::weak_ptr<BulkInQueue> reader_;
    std::atomic<bool> cancelRequested_ = false;
};

}  // namespace nivor
