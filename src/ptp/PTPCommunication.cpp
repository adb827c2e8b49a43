#include "ptp/PTPCommunication.h"

#include "logging/RecordText.h"
#include "logging/RollingLogger.h"
#include "ptp/EventLoopSlice.h"

#include <cassert>
#include <utility>

namespace nivor {

std::optional<EngineParts> PTPCommunication::sharedParts_;

PTPCommunication& PTPCommunication::sharedManager()
{
    static PTPCommunication shared = [] {
        assert(sharedParts_.has_value());
        return PTPCommunication(*std::exchange(sharedParts_, std::nullopt));
    }();
    return shared;
}

void PTPCommunication::setSharedParts(EngineParts parts)
{
    sharedParts_ = std::move(parts);
}

PTPCommunication::PTPCommunication(EngineParts parts)
    : parts_(std::move(parts))
    , logger_(parts_.logger != nullptr ? *parts_.logger : RollingLogger::sharedManager())
{
    assert(parts_.host != nullptr && parts_.pace > 0);
    if (!parts_.runLoopSlice)
        parts_.runLoopSlice = &turnEventLoop;
    disconnect();
}

PTPCommunication::~PTPCommunication()
{
    closeHandles();
}

void PTPCommunication::writeLog(std::string_view event, std::string_view message)
{
    // File names come from the camera, which must not forge records with them.
    if (hasRecordMarks(message))
        logger_.writeToFile("PTPCommunication", event, withoutRecordMarks(message));
    else
        logger_.writeToFile("PTPCommunication", event, message);
}

}  // namespace nivor
