#include "foundation/ByteWriter.h"
#include "foundation/ByteReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivor::test {
namespace {

using ::testing::ElementsAre;

TEST(ByteWriter, AppendsTheLeastSignificantByteFirst)
{
    ByteBuffer buffer{0xAA};
    appendLittleEndian(buffer, std::uint8_t{0x01});
    appendLittleEndian(buffer, std::uint16_t{0x0203});
    appendLittleEndian(buffer, std::uint32_t{0x84050607});
    EXPECT_THAT(buffer, ElementsAre(0xAA, 0x01, 0x03, 0x02, 0x07, 0x06, 0x05, 0x84));
}

TEST(ByteWriter, AppendsSixtyFourBits)
{
    ByteBuffer buffer;
    appendLittleEndian(buffer, std::uint64_t{0x8102030405060708});
    EXPECT_THAT(buffer, ElementsAre(0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x81));
}

TEST(ByteWriter, OverwritesInPlace)
{
    ByteBuffer buffer(6, 0xAA);
    putLittleEndian(buffer, 1, std::uint32_t{0x01020304});
    EXPECT_THAT(buffer, ElementsAre(0xAA, 0x04, 0x03, 0x02, 0x01, 0xAA));
}

TEST(ByteWriter, WritesWhatTheReaderReads)
{
    ByteBuffer buffer;
    appendLittleEndian(buffer, std::uint64_t{0xFEDCBA9876543210});
    appendLittleEndian(buffer, std::uint16_t{0xFFFE});
    ByteReader reader(buffer);
    EXPECT_EQ(reader.u64(), 0xFEDCBA9876543210U);
    EXPECT_EQ(reader.u16(), 0xFFFE);
}

}  // namespace
}  // namespace nivor::test
