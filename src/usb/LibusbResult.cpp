#include "usb/LibusbResult.h"

#include <libusb.h>

namespace nivor {

UsbResult resultOfLibusbError(int error)
{
    if (error >= 0)
        return UsbResult::Success;
    switch (error) {
    case LIBUSB_ERROR_IO:
        return UsbResult::IOError;
    case LIBUSB_ERROR_INVALID_PARAM:
        return UsbResult::BadArgument;
    case LIBUSB_ERROR_ACCESS:
        return UsbResult::NotPrivileged;
    case LIBUSB_ERROR_NO_DEVICE:
        return UsbResult::NoDevice;
    case LIBUSB_ERROR_NOT_FOUND:
        return UsbResult::NotFound;
    case LIBUSB_ERROR_BUSY:
        return UsbResult::ExclusiveAccess;
    case LIBUSB_ERROR_TIMEOUT:
        return UsbResult::TransactionTimeout;
    case LIBUSB_ERROR_OVERFLOW:
        return UsbResult::Overrun;
    case LIBUSB_ERROR_PIPE:
        return UsbResult::PipeStalled;
    case LIBUSB_ERROR_INTERRUPTED:
        return UsbResult::Aborted;
    case LIBUSB_ERROR_NO_MEM:
        return UsbResult::NoMemory;
    case LIBUSB_ERROR_NOT_SUPPORTED:
        return UsbResult::Unsupported;
    default:
        return UsbResult::Error;
    }
}

UsbResult resultOfTransferStatus(int status)
{
    switch (status) {
    case LIBUSB_TRANSFER_COMPLETED:
        return UsbResult::Success;
    case LIBUSB_TRANSFER_ERROR:
        return UsbResult::IOError;
    case LIBUSB_TRANSFER_TIMED_OUT:
        return UsbResult::TransactionTimeout;
    case LIBUSB_TRANSFER_CANCELLED:
        return UsbResult::Aborted;
    case LIBUSB_TRANSFER_STALL:
        return UsbResult::PipeStalled;
    case LIBUSB_TRANSFER_NO_DEVICE:
        return UsbResult::NoDevice;
    case LIBUSB_TRANSFER_OVERFLOW:
        return UsbResult::Overrun;
    default:
        return UsbResult::Error;
    }
}

}  // namespace nivor
