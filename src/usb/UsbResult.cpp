#include "usb/UsbResult.h"

namespace nivor {

const char* toText(UsbResult result)
{
    switch (result) {
    case UsbResult::Success:
        return "success";
    case UsbResult::Error:
        return "unspecified error";
    case UsbResult::NoMemory:
        return "no memory for the transfer";
    case UsbResult::NoDevice:
        return "the device is gone";
    case UsbResult::NotPrivileged:
        return "permission denied";
    case UsbResult::BadArgument:
        return "invalid request";
    case UsbResult::ExclusiveAccess:
        return "in use by another program";
    case UsbResult::Unsupported:
        return "not supported here";
    case UsbResult::IOError:
        return "input/output error on the wire";
    case UsbResult::NotOpen:
        return "not open";
    case UsbResult::Overrun:
        return "the device sent more than was asked for";
    case UsbResult::Aborted:
        return "transfer cancelled";
    case UsbResult::NotFound:
        return "not found";
    case UsbResult::PipeStalled:
        return "the endpoint stalled";
    case UsbResult::TransactionTimeout:
        return "nothing arrived in time";
    }
    return "unknown result";
}

}  // namespace nivor
