#include "foundation/ByteReader.h"
#include "support/HeapBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace nivor::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const ByteBuffer fifteen{
    0x01,                                            // u8
    0x03, 0x02,                                      // u16
    0x07, 0x06, 0x05, 0x84,                          // u32
    0x0F, 0x0E, 0x0D, 0x0C, 0x0B, 0x0A, 0x09, 0x88,  // u64
};

TEST(ByteReader, ReadsLittleEndianFieldsOneAfterTheOther)
{
    const HeapBytes bytes(fifteen);
    ByteReader reader(bytes.view());
    EXPECT_EQ(reader.u8(), 0x01);
    EXPECT_EQ(reader.u16(), 0x0203);
    EXPECT_EQ(reader.u32(), 0x84050607U);
    EXPECT_EQ(reader.u64(), 0x88090A0B0C0D0E0FU);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(reader.remaining(), 0U);
    EXPECT_EQ(reader.offset(), 15U);
}

TEST(ByteReader, ReadsTheGreatestNumbers)
{
    const HeapBytes bytes(ByteBuffer(15, 0xFF));
    ByteReader reader(bytes.view());
    EXPECT_EQ(reader.u8(), 0xFF);
    EXPECT_EQ(reader.u16(), 0xFFFF);
    EXPECT_EQ(reader.u32(), 0xFFFFFFFFU);
    EXPECT_EQ(reader.u64(), 0xFFFFFFFFFFFFFFFFU);
}

TEST(ByteReader, BeginsAtAnOffset)
{
    ByteReader reader(fifteen, 13);
    EXPECT_EQ(reader.remaining(), 2U);
    EXPECT_EQ(reader.u16(), 0x8809);
    EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, MayBeginAtTheEnd)
{
    ByteReader reader(fifteen, 15);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(reader.remaining(), 0U);
    EXPECT_THAT(reader.bytes(0), IsEmpty());
    EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, FailsFromTheStartBehindTheEnd)
{
    ByteReader reader(fifteen, 16);
    EXPECT_FALSE(reader.ok());
    EXPECT_EQ(reader.remaining(), 0U);
    EXPECT_EQ(reader.u8(), 0);
    EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, HandsOutBytes)
{
    ByteReader reader(fifteen, 1);
    EXPECT_THAT(reader.bytes(2), ElementsAre(0x03, 0x02));
    EXPECT_THAT(reader.bytes(0), IsEmpty());
    reader.skip(3);
    EXPECT_EQ(reader.u8(), 0x84);
    EXPECT_EQ(reader.remaining(), 8U);
}

TEST(ByteReader, FailsAtEveryFieldThatIsCut)
{
    for (std::size_t length = 0; length < 8; ++length) {
        const HeapBytes cut(ByteView(fifteen).first(length));
        ByteReader u64(cut.view());
        EXPECT_EQ(u64.u64(), 0U);
        EXPECT_FALSE(u64.ok()) << length;
        if (length < 4) {
            ByteReader u32(cut.view());
            EXPECT_EQ(u32.u32(), 0U);
            EXPECT_FALSE(u32.ok()) << length;
        }
        if (length < 2) {
            ByteReader u16(cut.view());
            EXPECT_EQ(u16.u16(), 0);
            EXPECT_FALSE(u16.ok()) << length;
        }
    }
}

TEST(ByteReader, StaysFailedThoughLaterReadsWouldFit)
{
    ByteReader reader(fifteen, 12);
    EXPECT_EQ(reader.u32(), 0U);  // three bytes are left
    EXPECT_FALSE(reader.ok());
    EXPECT_EQ(reader.remaining(), 0U);
    EXPECT_EQ(reader.u8(), 0);
    EXPECT_EQ(reader.u16(), 0);
    EXPECT_EQ(reader.u64(), 0U);
    EXPECT_THAT(reader.bytes(1), IsEmpty());
    EXPECT_THAT(reader.bytes(0), IsEmpty());
    reader.skip(1);
    EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, FailsWithTheGreatestCount)
{
    ByteReader reader(fifteen, 1);
    EXPECT_THAT(reader.bytes(std::numeric_limits<std::size_t>::max()), IsEmpty());
    EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, FailsWithoutBytes)
{
    ByteReader reader(ByteView{});
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(reader.u8(), 0);
    EXPECT_FALSE(reader.ok());
}

}  // namespace
}  // namespace nivor::test
