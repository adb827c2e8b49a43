#include "codes/ObjectPropCode.h"

namespace nivor {

const char* toText(ObjectPropCode code)
{
    switch (code) {
    case ObjectPropCode::StorageID:
        return "StorageID";
    case ObjectPropCode::ObjectFormat:
        return "Object Format";
    case ObjectPropCode::ObjectSize:
        return "Object Size";
    case ObjectPropCode::ObjectFileName:
        return "Object File Name";
    }
    return "unknown";
}

}  // namespace nivor
