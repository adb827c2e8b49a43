#include "codes/ClassRequest.h"
#include "codes/ContainerType.h"
#include "codes/EventCode.h"
#include "codes/ObjectFormatCode.h"
#include "codes/ObjectPropCode.h"
#include "codes/OperationCode.h"
#include "codes/ResponseCode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

namespace nivor::test {
namespace {

using Texts = std::map<unsigned, std::string>;

/// Holds every value that `Code` can take against the table: the standard's name for those in it,
/// "unknown" for all others.
template <typename Code> void expectTexts(const Texts& texts, unsigned greatest)
{
    for (unsigned value = 0; value <= greatest; ++value) {
        const auto entry = texts.find(value);
        const std::string expected = entry != texts.end() ? entry->second : "unknown";
        ASSERT_EQ(toText(static_cast<Code>(value)), expected) << value;
    }
}

TEST(CodeText, IsThatOfEveryContainerType)
{
    expectTexts<ContainerType>(
        {
            {1, "Command"},
            {2, "Data"},
            {3, "Response"},
            {4, "Event"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryOperation)
{
    expectTexts<OperationCode>(
        {
            {0x1001, "GetDeviceInfo"},
            {0x1002, "OpenSession"},
            {0x1003, "CloseSession"},
            {0x1004, "GetStorageIDs"},
            {0x1005, "GetStorageInfo"},
            {0x1006, "GetNumObjects"},
            {0x1007, "GetObjectHandles"},
            {0x1008, "GetObjectInfo"},
            {0x1009, "GetObject"},
            {0x100A, "GetThumb"},
            {0x100B, "DeleteObject"},
            {0x9803, "GetObjectPropValue"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryResponse)
{
    expectTexts<ResponseCode>(
        {
            {0x2000, "Undefined"},
            {0x2001, "OK"},
            {0x2002, "General Error"},
            {0x2003, "Session Not Open"},
            {0x2004, "Invalid TransactionID"},
            {0x2005, "Operation Not Supported"},
            {0x2006, "Parameter Not Supported"},
            {0x2007, "Incomplete Transfer"},
            {0x2008, "Invalid StorageID"},
            {0x2009, "Invalid ObjectHandle"},
            {0x200A, "DeviceProp Not Supported"},
            {0x200B, "Invalid ObjectFormatCode"},
            {0x200C, "Store Full"},
            {0x200D, "Object WriteProtected"},
            {0x200E, "Store Read-Only"},
            {0x200F, "Access Denied"},
            {0x2010, "No Thumbnail Present"},
            {0x2011, "SelfTest Failed"},
            {0x2012, "Partial Deletion"},
            {0x2013, "Store Not Available"},
            {0x2014, "Specification By Format Unsupported"},
            {0x2015, "No Valid ObjectInfo"},
            {0x2016, "Invalid Code Format"},
            {0x2017, "Unknown Vendor Code"},
            {0x2018, "Capture Already Terminated"},
            {0x2019, "Device Busy"},
            {0x201A, "Invalid ParentObject"},
            {0x201B, "Invalid DeviceProp Format"},
            {0x201C, "Invalid DeviceProp Value"},
            {0x201D, "Invalid Parameter"},
            {0x201E, "Session Already Open"},
            {0x201F, "Transaction Cancelled"},
            {0x2020, "Specification of Destination Unsupported"},
            {0xA801, "Invalid ObjectPropCode"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryEvent)
{
    expectTexts<EventCode>(
        {
            {0x4001, "CancelTransaction"},
            {0x4002, "ObjectAdded"},
            {0x4003, "ObjectRemoved"},
            {0x4004, "StoreAdded"},
            {0x4005, "StoreRemoved"},
            {0x4008, "DeviceInfoChanged"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryObjectFormat)
{
    expectTexts<ObjectFormatCode>(
        {
            {0x0000, "All formats"},
            {0x3000, "Undefined"},
            {0x3001, "Association"},
            {0x3004, "Text"},
            {0x3008, "WAV"},
            {0x3009, "MP3"},
            {0x300A, "AVI"},
            {0x300B, "MPEG"},
            {0x300D, "QuickTime"},
            {0x3800, "Undefined image"},
            {0x3801, "EXIF/JPEG"},
            {0x3804, "BMP"},
            {0x3807, "GIF"},
            {0x3808, "JFIF"},
            {0x380B, "PNG"},
            {0x380D, "TIFF"},
            {0xB982, "MP4"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryObjectProperty)
{
    expectTexts<ObjectPropCode>(
        {
            {0xDC01, "StorageID"},
            {0xDC02, "Object Format"},
            {0xDC04, "Object Size"},
            {0xDC07, "Object File Name"},
        },
        0xFFFF);
}

TEST(CodeText, IsThatOfEveryClassRequest)
{
    expectTexts<ClassRequest>(
        {
            {0x64, "Cancel Request"},
            {0x65, "Get Extended Event Data"},
            {0x66, "Device Reset Request"},
            {0x67, "Get Device Status"},
        },
        0xFF);
}

}  // namespace
}  // namespace nivor::test
