#include "usb/LibusbHandle.h"

#include "codes/ClassRequest.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "usb/AwaitedTransfer.h"
#include "usb/BulkInQueue.h"
#include "usb/LibusbResult.h"

#include <utility>

namespace nivor {

namespace {

bool isRequest(const ControlRequest& request, std::uint8_t type, ClassRequest code)
{
    return request.bmRequestType == type && request.bRequest == static_cast<std::uint8_t>(code);
}

}  // namespace

LibusbHandle::LibusbHandle(std::shared_ptr<libusb_context> context, libusb_device_handle* handle,
                           std::shared_ptr<std::atomic<bool>> gone)
    : context_(std::move(context))
    , handle_(handle)
    , gone_(std::move(gone))
    , events_(std::make_unique<UsbEventThread>(context_.get()))
{
}

LibusbHandle::~LibusbHandle()
{
    events_.reset();
    libusb_close(handle_);
}

UsbResult LibusbHandle::open(std::shared_ptr<libusb_context> context, libusb_device* device,
                             std::shared_ptr<std::atomic<bool>> gone,
                             std::shared_ptr<LibusbHandle>& opened)
{
    if (*gone)
        return UsbResult::NoDevice;
    libusb_device_handle* handle = nullptr;
    const UsbResult result = resultOfLibusbError(libusb_open(device, &handle));
    if (!succeeded(result)) {
        if (result == UsbResult::NoDevice)
            *gone = true;
        return result;
    }
    // Where the system has no such drivers there is nothing to detach either.
    libusb_set_auto_detach_kernel_driver(handle, 1);
    opened.reset(new LibusbHandle(std::move(context), handle, std::move(gone)));
    return result;
}

UsbResult LibusbHandle::noted(UsbResult result)
{
    if (result == UsbResult::NoDevice)
        deviceLeft();
    return result;
}

UsbResult LibusbHandle::resultOf(int libusbError)
{
    return noted(resultOfLibusbError(libusbError));
}

UsbResult LibusbHandle::controlRequest(ControlRequest& request)
{
    request.transferred = 0;
    if (*gone_)
        return UsbResult::NoDevice;
    const UsbResult result = noted(awaitControl(handle_, request));
    if (succeeded(result))
        watchForCancel(request);
    return result;
}

/// A Cancel Request and, after it, a device status of OK: the camera has dropped the transaction
/// (USB Still Image class, 5.2).
void LibusbHandle::watchForCancel(const ControlRequest& request)
{
    if (isRequest(request, classRequestOut, ClassRequest::CancelRequest)) {
        cancelRequested_ = true;
        return;
    }
    if (!isRequest(request, classRequestIn, ClassRequest::GetDeviceStatus))
        return;
    ByteReader status(request.data.first(request.transferred), 2);
    const std::uint16_t code = status.u16();
    if (!status.ok() || code != static_cast<std::uint16_t>(ResponseCode::OK))
        return;
    if (!cancelRequested_.exchange(false))
        return;
    if (const auto queue = reader())
        queue->dropUntilWrite();
}

UsbResult LibusbHandle::write(std::uint8_t endpoint, ByteView bytes)
{
    if (*gone_)
        return UsbResult::NoDevice;
    // What comes from here on answers this write and not the transaction cancelled before it.
    cancelRequested_ = false;
    const auto queue = reader();
    if (queue)
        queue->endDropping();
    const UsbResult result = noted(awaitBulkOut(handle_, endpoint, bytes, writeLimit));
    if (queue)
        queue->writeEnded();
    return result;
}

void LibusbHandle::setReader(std::weak_ptr<BulkInQueue> reader)
{
    const std::lock_guard guard(readerMutex_);
    reader_ = std::move(reader);
    cancelRequested_ = false;
}

std::shared_ptr<BulkInQueue> LibusbHandle::reader()
{
    const std::lock_guard guard(readerMutex_);
    return reader_.lock();
}

void LibusbHandle::deviceLeft()
{
    *gone_ = true;
    if (const auto queue = reader())
        queue->deviceLeft();
}

}  // namespace nivor
