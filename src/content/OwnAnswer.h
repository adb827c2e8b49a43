/// Asks the camera something and believes only an answer to that.
#pragma once

#include "ptp/PTPCommunication.h"

#include <mutex>
#include <utility>

namespace nivor {

/// Runs an operation of the engine; true when it succeeded, and not with the late answer to an
/// earlier one. May raise what the operation raises.
template <typename Operation> bool hasOwnAnswer(PTPCommunication& engine, Operation&& operation)
{
    // Whether it was one is known until another thread begins a transaction.
    const std::lock_guard guard(engine.lock());
    return std::forward<Operation>(operation)() && !engine.isAnswerEarlier();
}

}  // namespace nivor
