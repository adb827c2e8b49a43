/// One asynchronous bulk-in transfer of libusb with its buffer.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "foundation/Bytes.h"
#include "usb/UsbResult.h"

#include <libusb.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace nivor {

/// Not guarded by itself: its owner calls everything under the owner's lock.
class BulkInTransfer {
public:
    class Owner {
    public:
        /// Called once per submission by whichever thread handles libusb's events; may destroy
        /// the transfer.
        virtual void onFinished(BulkInTransfer& transfer) = 0;

    protected:
        Owner() = default;
        ~Owner() = default;
    };

    /// Nothing when there is no memory for a buffer of `size` bytes.
    static std::unique_ptr<BulkInTransfer> create(libusb_device_handle* handle,
                                                  std::uint8_t endpoint, std::size_t size,
                                                  Owner& owner);

    ~BulkInTransfer();

    BulkInTransfer(const BulkInTransfer&) = delete;
    BulkInTransfer& operator=(const BulkInTransfer&) = delete;

    /// Hands the empty buffer to the kernel, without a time-out: a transfer's time-out counts from
    /// its submission, so those of a whole queue would run out together.
    UsbResult submit();

    /// Asks for an early end; the transfer finishes all the same, with what it has received.
    void cancel();

    /// Tells the owner nothing any more, for an owner that ends before the transfer does.
    void disown() { owner_ = nullptr; }

    /// Settles the transfer as libusb left it; its owner calls that once per submission.
    void finish();

    [[nodiscard]] bool finished() const { return finished_; }

    /// How it ended. An owner that has reported a failure, or has its reasons not to, calls off
    /// the failure with `forgive`.
    [[nodiscard]] UsbResult outcome() const { return outcome_; }
    void forgive() { outcome_ = UsbResult::Aborted; }

    /// Whether a failure is still to be reported; being cancelled is none.
    [[nodiscard]] bool failed() const
    {
        return !succeeded(outcome_) && outcome_ != UsbResult::Aborted;
    }

    /// Whether the device ended it with a short or an empty packet.
    [[nodiscard]] bool endedShort() const
    {
        return succeeded(outcome_) && transfer_->actual_length < transfer_->length;
    }

    [[nodiscard]] std::size_t receivedCount() const;
    [[nodiscard]] std::size_t unreadCount() const { return receivedCount() - read_; }

    /// Copies the next unread bytes, as many as fit, and returns their number.
    std::size_t read(std::span<std::uint8_t> into);

private:
    BulkInTransfer(libusb_device_handle* handle, Owner& owner);

    bool allocate(std::size_t size);
    static void LIBUSB_CALL callback(libusb_transfer* transfer);

    libusb_device_handle* handle_;
    std::atomic<Owner*> owner_;
    libusb_transfer* transfer_ = nullptr;
    std::unique_ptr<std::uint8_t[]> heap_;
    std::uint8_t* deviceMemory_ = nullptr;  // mapped from the kernel, which then copies nothing
    std::size_t size_ = 0;
    std::size_t read_ = 0;
    bool finished_ = false;
    UsbResult outcome_ = UsbResult::Success;
};

}  // namespace nivor
