#include "codes/ClassRequest.h"

namespace nivor {

const char* toText(ClassRequest code)
{
    switch (code) {
    case ClassRequest::CancelRequest:
        return "Cancel Request";
    case ClassRequest::GetExtendedEventData:
        return "Get Extended Event Data";
    case ClassRequest::DeviceReset:
        return "Device Reset Request";
    case ClassRequest::GetDeviceStatus:
        return "Get Device Status";
    }
    return "unknown";
}

}  // namespace nivor
