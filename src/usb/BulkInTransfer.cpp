#include "usb/BulkInTransfer.h"

#include "usb/LibusbResult.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <new>

namespace nivor {

BulkInTransfer::BulkInTransfer(libusb_device_handle* handle, Owner& owner)
    : handle_(handle)
    , owner_(&owner)
{
}

BulkInTransfer::~BulkInTransfer()
{
    if (deviceMemory_)
        libusb_dev_mem_free(handle_, deviceMemory_, size_);
    libusb_free_transfer(transfer_);
}

std::unique_ptr<BulkInTransfer> BulkInTransfer::create(libusb_device_handle* handle,
                                                       std::uint8_t endpoint, std::size_t size,
                                                       Owner& owner)
{
    // It is called from libusb's callbacks as well, which no error may leave.
    std::unique_ptr<BulkInTransfer> made(new (std::nothrow) BulkInTransfer(handle, owner));
    if (!made || !made->allocate(size))
        return nullptr;
    std::uint8_t* const buffer = made->deviceMemory_ ? made->deviceMemory_ : made->heap_.get();
    libusb_fill_bulk_transfer(made->transfer_, handle, endpoint, buffer, static_cast<int>(size),
                              &BulkInTransfer::callback, made.get(), 0);
    return made;
}

bool BulkInTransfer::allocate(std::size_t size)
{
    size_ = size;
    transfer_ = libusb_alloc_transfer(0);
    if (!transfer_)
        return false;
    deviceMemory_ = libusb_dev_mem_alloc(handle_, size);
    if (!deviceMemory_)
        heap_.reset(new (std::nothrow) std::uint8_t[size]);
    return deviceMemory_ || heap_;
}

UsbResult BulkInTransfer::submit()
{
    read_ = 0;
    finished_ = false;
    outcome_ = UsbResult::Success;
    transfer_->actual_length = 0;
    return resultOfLibusbError(libusb_submit_transfer(transfer_));
}

void BulkInTransfer::cancel()
{
    // It may have finished a moment ago; its callback comes in either case.
    libusb_cancel_transfer(transfer_);
}

void BulkInTransfer::finish()
{
    assert(!finished_);
    finished_ = true;
    outcome_ = resultOfTransferStatus(transfer_->status);
}

std::size_t BulkInTransfer::receivedCount() const
{
    return static_cast<std::size_t>(std::max(transfer_->actual_length, 0));
}

std::size_t BulkInTransfer::read(std::span<std::uint8_t> into)
{
    const std::size_t count = std::min(unreadCount(), into.size());
    if (count > 0)
        std::memcpy(into.data(), transfer_->buffer + read_, count);
    read_ += count;
    return count;
}

void BulkInTransfer::callback(libusb_transfer* transfer)
{
    auto& self = *static_cast<BulkInTransfer*>(transfer->user_data);
    if (Owner* const owner = self.owner_)
        owner->onFinished(self);
}

}  // namespace nivor
