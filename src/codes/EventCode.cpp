#include "codes/EventCode.h"

namespace nivor {

const char* toText(EventCode code)
{
    switch (code) {
    case EventCode::CancelTransaction:
        return "CancelTransaction";
    case EventCode::ObjectAdded:
        return "ObjectAdded";
    case EventCode::ObjectRemoved:
        return "ObjectRemoved";
    case EventCode::StoreAdded:
        return "StoreAdded";
    case EventCode::StoreRemoved:
        return "StoreRemoved";
    case EventCode::DeviceInfoChanged:
        return "DeviceInfoChanged";
    }
    return "unknown";
}

}  // namespace nivor
