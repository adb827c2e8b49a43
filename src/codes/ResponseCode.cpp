#include "codes/ResponseCode.h"

namespace nivor {

const char* toText(ResponseCode code)
{
    switch (code) {
    case ResponseCode::Undefined:
        return "Undefined";
    case ResponseCode::OK:
        return "OK";
    case ResponseCode::GeneralError:
        return "General Error";
    case ResponseCode::SessionNotOpen:
        return "Session Not Open";
    case ResponseCode::InvalidTransactionID:
        return "Invalid TransactionID";
    case ResponseCode::OperationNotSupported:
        return "Operation Not Supported";
    case ResponseCode::ParameterNotSupported:
        return "Parameter Not Supported";
    case ResponseCode::IncompleteTransfer:
        return "Incomplete Transfer";
    case ResponseCode::InvalidStorageID:
        return "Invalid StorageID";
    case ResponseCode::InvalidObjectHandle:
        return "Invalid ObjectHandle";
    case ResponseCode::DevicePropNotSupported:
        return "DeviceProp Not Supported";
    case ResponseCode::InvalidObjectFormatCode:
        return "Invalid ObjectFormatCode";
    case ResponseCode::StoreFull:
        return "Store Full";
    case ResponseCode::ObjectWriteProtected:
        return "Object WriteProtected";
    case ResponseCode::StoreReadOnly:
        return "Store Read-Only";
    case ResponseCode::AccessDenied:
        return "Access Denied";
    case ResponseCode::NoThumbnailPresent:
        return "No Thumbnail Present";
    case ResponseCode::SelfTestFailed:
        return "SelfTest Failed";
    case ResponseCode::PartialDeletion:
        return "Partial Deletion";
    case ResponseCode::StoreNotAvailable:
        return "Store Not Available";
    case ResponseCode::SpecificationByFormatUnsupported:
        return "Specification By Format Unsupported";
    case ResponseCode::NoValidObjectInfo:
        return "No Valid ObjectInfo";
    case ResponseCode::InvalidCodeFormat:
        return "Invalid Code Format";
    case ResponseCode::UnknownVendorCode:
        return "Unknown Vendor Code";
    case ResponseCode::CaptureAlreadyTerminated:
        return "Capture Already Terminated";
    case ResponseCode::DeviceBusy:
        return "Device Busy";
    case ResponseCode::InvalidParentObject:
        return "Invalid ParentObject";
    case ResponseCode::InvalidDevicePropFormat:
        return "Invalid DeviceProp Format";
    case ResponseCode::InvalidDevicePropValue:
        return "Invalid DeviceProp Value";
    case ResponseCode::InvalidParameter:
        return "Invalid Parameter";
    case ResponseCode::SessionAlreadyOpen:
        return "Session Already Open";
    case ResponseCode::TransactionCancelled:
        return "Transaction Cancelled";
    case ResponseCode::SpecificationOfDestinationUnsupported:
        return "Specification of Destination Unsupported";
    case ResponseCode::InvalidObjectPropCode:
        return "Invalid ObjectPropCode";
    }
    return "unknown";
}

}  // namespace nivor
