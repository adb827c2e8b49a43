#include "simulator/FaultTracker.h"

#include <utility>

namespace nivor {

FaultTracker::FaultTracker(FaultPlan plan)
    : plan_(std::move(plan))
    , operationsSeen_(plan_.operationFaults.size())
    , stepsSeen_(plan_.usbFaults.size())
{
}

std::vector<const fault::Effect*> FaultTracker::strike(OperationCode operation)
{
    std::vector<const fault::Effect*> striking;
    for (std::size_t i = 0; i < plan_.operationFaults.size(); ++i) {
        const FaultPlan::OperationFault& fault = plan_.operationFaults[i];
        if (fault.operation.value_or(operation) == operation
            && fault.occurrences.contain(++operationsSeen_[i]))
            striking.push_back(&fault.effect);
    }
    return striking;
}

UsbResult FaultTracker::strike(UsbStep step)
{
    UsbResult result = UsbResult::Success;
    for (std::size_t i = 0; i < plan_.usbFaults.size(); ++i) {
        const FaultPlan::UsbFault& fault = plan_.usbFaults[i];
        if (fault.step == step && fault.occurrences.contain(++stepsSeen_[i]))
            result = fault.result;
    }
    return result;
}

}  // namespace nivor
