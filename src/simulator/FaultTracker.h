/// Counts occurrences against a fault plan and says which faults strike now.
#pragma once

#include "simulator/FaultPlan.h"

#include <cstdint>
#include <vector>

namespace nivor {

/// Not for use from several threads at a time.
class FaultTracker {
public:
    explicit FaultTracker(FaultPlan plan);

    /// Counts a command of `operation`; the effects that strike it, in the plan's order.
    std::vector<const fault::Effect*> strike(OperationCode operation);

    /// Counts a call; the failure that strikes it, or `UsbResult::Success`.
    UsbResult strike(UsbStep step);

    [[nodiscard]] const CancelBehaviour& cancelling() const { return plan_.cancelling; }

private:
    FaultPlan plan_;
    std::vector<std::uint64_t> operationsSeen_;  // one for each fault of the plan
    std::vector<std::uint64_t> stepsSeen_;
};

}  // namespace nivor
