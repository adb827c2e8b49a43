/// The two time-outs of a USB request.
#pragma once

#include <chrono>

namespace nivor {

struct UsbTimeouts {
    std::chrono::milliseconds noData;      ///< longest wait without any byte moving
    std::chrono::milliseconds completion;  ///< longest wait for the whole request
};

}  // namespace nivor
