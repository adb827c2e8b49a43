#include "codes/OperationCode.h"

namespace nivor {

const char* toText(OperationCode code)
{
    switch (code) {
    case OperationCode::GetDeviceInfo:
        return "GetDeviceInfo";
    case OperationCode::OpenSession:
        return "OpenSession";
    case OperationCode::CloseSession:
        return "CloseSession";
    case OperationCode::GetStorageIDs:
        return "GetStorageIDs";
    case OperationCode::GetStorageInfo:
        return "GetStorageInfo";
    case OperationCode::GetNumObjects:
        return "GetNumObjects";
    case OperationCode::GetObjectHandles:
        return "GetObjectHandles";
    case OperationCode::GetObjectInfo:
        return "GetObjectInfo";
    case OperationCode::GetObject:
        return "GetObject";
    case OperationCode::GetThumb:
        return "GetThumb";
    case OperationCode::DeleteObject:
        return "DeleteObject";
    case OperationCode::GetObjectPropValue:
        return "GetObjectPropValue";
    }
    return "unknown";
}

}  // namespace nivor
