#include "codes/ClassRequest.h"
#include "codes/ContainerType.h"
#include "codes/ObjectFormatCode.h"
#include "codes/ObjectPropCode.h"
#include "codes/OperationCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace nivor::test {
namespace {

template <typename Code> constexpr auto numberOf(Code code)
{
    return static_cast<std::underlying_type_t<Code>>(code);
}

TEST(CodeValue, TakesAsManyBytesAsOnTheWire)
{
    EXPECT_EQ(sizeof(ContainerType), 2U);
    EXPECT_EQ(sizeof(OperationCode), 2U);
    EXPECT_EQ(sizeof(ResponseCode), 2U);
    EXPECT_EQ(sizeof(ObjectFormatCode), 2U);
    EXPECT_EQ(sizeof(ObjectPropCode), 2U);
    EXPECT_EQ(sizeof(ClassRequest), 1U);
}

TEST(CodeValue, IsTheStandardsForTheOperationsInUse)
{
    EXPECT_EQ(numberOf(OperationCode::OpenSession), 0x1002);
    EXPECT_EQ(numberOf(OperationCode::CloseSession), 0x1003);
    EXPECT_EQ(numberOf(OperationCode::GetStorageIDs), 0x1004);
    EXPECT_EQ(numberOf(OperationCode::GetObjectHandles), 0x1007);
    EXPECT_EQ(numberOf(OperationCode::GetObjectInfo), 0x1008);
    EXPECT_EQ(numberOf(OperationCode::GetObject), 0x1009);
    EXPECT_EQ(numberOf(OperationCode::GetThumb), 0x100A);
    EXPECT_EQ(numberOf(OperationCode::DeleteObject), 0x100B);
    EXPECT_EQ(numberOf(OperationCode::GetObjectPropValue), 0x9803);
}

TEST(CodeValue, IsTheStandardsForSuccessFoldersAndSizes)
{
    EXPECT_EQ(numberOf(ResponseCode::OK), 0x2001);
    EXPECT_EQ(numberOf(ObjectFormatCode::Association), 0x3001);
    EXPECT_EQ(numberOf(ObjectPropCode::ObjectSize), 0xDC04);
}

TEST(CodeValue, IsTheStandardsForTheStillImageInterface)
{
    EXPECT_EQ(stillImageTriple, (InterfaceTriple{6, 1, 1}));
    EXPECT_NE(stillImageTriple, (InterfaceTriple{6, 1, 0}));
    EXPECT_NE(stillImageTriple, (InterfaceTriple{6, 0, 1}));
    EXPECT_NE(stillImageTriple, (InterfaceTriple{8, 1, 1}));
}

TEST(CodeValue, IsTheStandardsForTheControlRequests)
{
    EXPECT_EQ(numberOf(ClassRequest::CancelRequest), 0x64);
    EXPECT_EQ(numberOf(ClassRequest::DeviceReset), 0x66);
    EXPECT_EQ(numberOf(ClassRequest::GetDeviceStatus), 0x67);
    EXPECT_EQ(classRequestOut, 0x21);
    EXPECT_EQ(classRequestIn, 0xA1);
}

TEST(CodeValue, IsTheStandardsForTheContainerHeader)
{
    EXPECT_EQ(containerHeaderSize, 12U);
    EXPECT_EQ(containerLengthUnknown, 0xFFFFFFFFU);
}

}  // namespace
}  // namespace nivor::test
