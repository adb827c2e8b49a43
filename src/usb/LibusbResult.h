/// Turns libusb's error and transfer codes into the results of the USB seam.
#pragma once

#include "usb/UsbResult.h"

namespace nivor {

/// The result for a `libusb_error`, or success for 0 and for a count.
///
///     LIBUSB_SUCCESS, counts      Success             LIBUSB_ERROR_TIMEOUT TransactionTimeout
///     LIBUSB_ERROR_IO             IOError             LIBUSB_ERROR_OVERFLOW       Overrun
///     LIBUSB_ERROR_INVALID_PARAM  BadArgument         LIBUSB_ERROR_PIPE           PipeStalled
///     LIBUSB_ERROR_ACCESS         NotPrivileged       LIBUSB_ERROR_INTERRUPTED    Aborted
///     LIBUSB_ERROR_NO_DEVICE      NoDevice            LIBUSB_ERROR_NO_MEM         NoMemory
///     LIBUSB_ERROR_NOT_FOUND      NotFound            LIBUSB_ERROR_NOT_SUPPORTED  Unsupported
///     LIBUSB_ERROR_BUSY           ExclusiveAccess     LIBUSB_ERROR_OTHER, others  Error
UsbResult resultOfLibusbError(int error);

/// The result for a `libusb_transfer_status`.
///
///     LIBUSB_TRANSFER_COMPLETED   Success             LIBUSB_TRANSFER_STALL       PipeStalled
///     LIBUSB_TRANSFER_ERROR       IOError             LIBUSB_TRANSFER_NO_DEVICE   NoDevice
///     LIBUSB_TRANSFER_TIMED_OUT   TransactionTimeout  LIBUSB_TRANSFER_OVERFLOW    Overrun
///     LIBUSB_TRANSFER_CANCELLED   Aborted             others                      Error
UsbResult resultOfTransferStatus(int status);

}  // namespace nivor
