#include "codes/ContainerType.h"

namespace nivor {

const char* toText(ContainerType code)
{
    switch (code) {
    case ContainerType::Command:
        return "Command";
    case ContainerType::Data:
        return "Data";
    case ContainerType::Response:
        return "Response";
    case ContainerType::Event:
        return "Event";
    }
    return "unknown";
}

}  // namespace nivor
