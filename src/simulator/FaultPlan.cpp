#include "simulator/FaultPlan.h"

#include <utility>

namespace nivor {

FaultPlan& FaultPlan::on(OperationCode operation, fault::Effect effect, Occurrences when)
{
    operationFaults.push_back({operation, std::move(effect), when});
    return *this;
}

FaultPlan& FaultPlan::onAny(fault::Effect effect, Occurrences when)
{
    operationFaults.push_back({std::nullopt, std::move(effect), when});
    return *this;
}

FaultPlan& FaultPlan::usb(UsbStep step, UsbResult result, Occurrences when)
{
    usbFaults.push_back({step, result, when});
    return *this;
}

FaultPlan& FaultPlan::cancel(CancelBehaviour behaviour)
{
    cancelling = behaviour;
    return *this;
}

}  // namespace nivor
