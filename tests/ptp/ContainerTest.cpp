#include "ptp/CommandContainer.h"
#include "ptp/ContainerHeader.h"

#include <gmock/gmock.h>

using namespace nivor;
using ::testing::ElementsAre;

TEST(CommandContainer, CountsParametersInItsLength)
{
    CommandContainer command(OperationCode::DeleteObject, 2);
    command.append(HandleBlock{{0x0A, 0x00, 0x01, 0x80}}).append(0);
    EXPECT_THAT(command.bytes(),
                ElementsAre(0x14, 0x00, 0x00, 0x00,    // length 20
                            0x01, 0x00,                // command block
                            0x0B, 0x10,                // DeleteObject
                            0x00, 0x00, 0x00, 0x00,    // transaction ID, not stamped yet
                            0x0A, 0x00, 0x01, 0x80,    // handle, as received
                            0x00, 0x00, 0x00, 0x00));  // all formats
}

TEST(CommandContainer, IsTwelveBytesWithoutParameters)
{
    CommandContainer command(OperationCode::CloseSession, 0);
    EXPECT_THAT(command.bytes(),
                ElementsAre(0x0C, 0, 0, 0,  // length 12
                            0x01, 0,        // command block
                            0x03, 0x10,     // CloseSession
                            0, 0, 0, 0));   // transaction ID
}

TEST(CommandContainer, IsStampedInBytesEightToEleven)
{
    CommandContainer command(OperationCode::GetStorageIDs, 0);
    stampTransactionID(command.bytes(), 0x04030201);
    EXPECT_THAT(command.bytes(),
                ElementsAre(0x0C, 0, 0, 0, 0x01, 0, 0x04, 0x10,  //
                            0x01, 0x02, 0x03, 0x04));            // stamped
}

TEST(ContainerHeader, ReadsLittleEndianFields)
{
    const ByteBuffer bytes{0x20, 0x14, 0x00, 0x00,   // length 5152
                           0x02, 0x00,               // data block
                           0x09, 0x10,               // GetObject
                           0x07, 0x00, 0x00, 0x01};  // transaction ID
    const ContainerHeader header = ContainerHeader::parse(bytes);
    EXPECT_EQ(header.length, 5152U);
    EXPECT_TRUE(header.isOfType(ContainerType::Data));
    EXPECT_EQ(header.code, 0x1009);
    EXPECT_EQ(header.transactionID, 0x01000007U);
}

TEST(ContainerHeader, IsZeroBeyondTheBytesGiven)
{
    const ByteBuffer bytes{0x20, 0x00, 0x00, 0x00,  // length
                           0x03};                   // half a type
    const ContainerHeader header = ContainerHeader::parse(bytes);
    EXPECT_EQ(header.length, 32U);
    EXPECT_EQ(header.type, 0);
    EXPECT_EQ(header.code, 0);
}

TEST(ContainerHeader, TakesTheExpectedSizeWhereTheLengthDoesNotFit)
{
    const ContainerHeader header{.length = 0xFFFFFFFF, .type = 2};
    EXPECT_EQ(header.completeSize(5'000'000'012), 5'000'000'012U);
}

TEST(ContainerHeader, TakesTheLengthAsItIsForTypesBeyondFour)
{
    const ContainerHeader header{.length = 0xFFFFFFFF, .type = 5};
    EXPECT_EQ(header.completeSize(12), 0xFFFFFFFFU);
}

TEST(ContainerHeader, IgnoresTheExpectedSizeWhereTheLengthFits)
{
    const ContainerHeader header{.length = 0xFFFFFFFE, .type = 2};
    EXPECT_EQ(header.completeSize(12), 0xFFFFFFFEU);
}

TEST(HandleBlock, IsKeyedByUnsignedDecimalText)
{
    const HandleBlock handle{{0xFF, 0xFF, 0xFF, 0xFF}};
    EXPECT_EQ(handle.key(), QStringLiteral("4294967295"));
    EXPECT_EQ(handle.text(), "<ffffffff>");
    EXPECT_EQ(HandleBlock::fromNumber(0x00010002).text(), "<02000100>");
    EXPECT_EQ(HandleBlock::fromNumber(0x00010002).number(), 0x00010002U);
}
