/// Random misbehaviour of a camera.
#pragma once

#include "simulator/FaultPlan.h"
#include "soak/Random.h"

#include <string>

namespace nivor::soak {

/// One to three faults of any kind at any operation or step of the USB, and now and then a camera
/// that takes a Cancel Request badly.
FaultPlan makeRandomFaults(Random& random);

/// The plan in one line, for the message of a cycle that went wrong.
std::string describe(const FaultPlan& plan);

}  // namespace nivor::soak
