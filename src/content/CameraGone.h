/// Tells a camera that is no longer there from one that merely refused something.
#pragma once

#include "ptp/TransactionFailure.h"

namespace nivor {

/// Whether nothing that is asked of the camera from now on can succeed.
inline bool isCameraGone(const TransactionFailure& failure)
{
    using Cause = TransactionFailure::Cause;
    return failure.cause == Cause::NotConnected
        || (failure.cause == Cause::ReadFailed && failure.usbResult == UsbResult::NoDevice);
}

/// What is said of the files that were never asked for because of that.
inline constexpr const char* cameraGoneText = "the camera is gone";

}  // namespace nivor
