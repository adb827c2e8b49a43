/// Which faults a simulated camera has, and when each of them strikes.
#pragma once

#include "codes/OperationCode.h"
#include "simulator/CancelBehaviour.h"
#include "simulator/Fault.h"
#include "usb/UsbResult.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace nivor {

/// The occurrences of a matching event that a fault strikes at, counted from 1, both ends included.
struct Occurrences {
    std::uint64_t first = 1;
    std::uint64_t last = std::numeric_limits<std::uint64_t>::max();

    static constexpr Occurrences each() { return {}; }
    static constexpr Occurrences nth(std::uint64_t n) { return {n, n}; }
    static constexpr Occurrences firstTimes(std::uint64_t n) { return {1, n}; }
    static constexpr Occurrences from(std::uint64_t n) { return {.first = n}; }

    [[nodiscard]] constexpr bool contain(std::uint64_t n) const { return n >= first && n <= last; }
};

/// The calls across the USB seam that can be made to fail.
enum class UsbStep : std::uint8_t {
    SerialNumber,  ///< answers nothing, whatever the result says
    DeviceOpen,
    ConfigurationDescriptor,
    SetConfiguration,
    FindInterface,
    InterfaceOpen,
    WritePipe,  ///< the camera gets nothing of it
    ReadPipe,   ///< nothing is taken off the pipe
    CancelRequest,
    GetDeviceStatus,
};

/// A plain value; build it in one expression:
///
///     FaultPlan().on(OperationCode::OpenSession, fault::Silence{}, Occurrences::firstTimes(2))
///                .usb(UsbStep::DeviceOpen, UsbResult::ExclusiveAccess)
struct FaultPlan {
    struct OperationFault {
        std::optional<OperationCode> operation;  ///< nothing = any
        fault::Effect effect;
        Occurrences occurrences;
    };

    struct UsbFault {
        UsbStep step;
        UsbResult result;
        Occurrences occurrences;
    };

    std::vector<OperationFault> operationFaults;
    std::vector<UsbFault> usbFaults;
    CancelBehaviour cancelling;

    /// Adds a fault to the commands of one operation.
    FaultPlan& on(OperationCode operation, fault::Effect effect, Occurrences when = {});

    /// Adds a fault to the commands of all operations; occurrences count them all.
    FaultPlan& onAny(fault::Effect effect, Occurrences when = {});

    /// Makes a call across the seam end with `result`.
    FaultPlan& usb(UsbStep step, UsbResult result, Occurrences when = {});

    /// Says how the camera takes a Cancel Request.
    FaultPlan& cancel(CancelBehaviour behaviour);
};

}  // namespace nivor
