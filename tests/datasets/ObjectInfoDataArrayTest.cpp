#include "datasets/ObjectInfoData.h"
#include "support/HeapBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivor::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ObjectInfoDataArray : public ::testing::Test {
protected:
    bool convert(const ByteBuffer& bytes)
    {
        return ObjectInfoData::convertByteArrayToNSArray(HeapBytes(bytes).view(), elements_);
    }

    std::vector<std::uint16_t> elements_{99};
};

TEST_F(ObjectInfoDataArray, FailsWithoutBytes)
{
    EXPECT_FALSE(ObjectInfoData::convertByteArrayToNSArray(std::nullopt, elements_));
    EXPECT_THAT(elements_, ElementsAre(99));
}

TEST_F(ObjectInfoDataArray, HasItsElementsInOrder)
{
    EXPECT_TRUE(convert({0x02, 0x00, 0x00, 0x00,  // count 2
                         0x01, 0x10,              // 0x1001
                         0xFF, 0xFF}));           // 0xFFFF
    EXPECT_THAT(elements_, ElementsAre(0x1001, 0xFFFF));
}

TEST_F(ObjectInfoDataArray, IsEmptyWithACountOfZero)
{
    EXPECT_TRUE(convert({0x00, 0x00, 0x00, 0x00}));
    EXPECT_THAT(elements_, IsEmpty());
}

TEST_F(ObjectInfoDataArray, IsEmptyWithANegativeCount)
{
    EXPECT_TRUE(convert({0xFF, 0xFF, 0xFF, 0xFF}));  // -1
    EXPECT_THAT(elements_, IsEmpty());
    EXPECT_TRUE(convert({0x00, 0x00, 0x00, 0x80, 0x01, 0x00}));  // the least of all, and an element
    EXPECT_THAT(elements_, IsEmpty());
}

TEST_F(ObjectInfoDataArray, FailsWhenItRunsPastItsBytes)
{
    EXPECT_FALSE(convert({}));                                          // no count
    EXPECT_FALSE(convert({0x01, 0x00, 0x00}));                          // three quarters of a count
    EXPECT_FALSE(convert({0x01, 0x00, 0x00, 0x00}));                    // count 1, no element
    EXPECT_FALSE(convert({0x01, 0x00, 0x00, 0x00, 0x01}));              // count 1, half an element
    EXPECT_FALSE(convert({0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x02}));  // count 2, one and a half
    EXPECT_THAT(elements_, ElementsAre(99));
}

TEST_F(ObjectInfoDataArray, FailsWithAHugeCountBeforeItAllocates)
{
    // 2147483647 elements would be 4 GiB.
    EXPECT_FALSE(convert({0xFF, 0xFF, 0xFF, 0x7F, 0x01, 0x00}));
    EXPECT_THAT(elements_, ElementsAre(99));
}

TEST_F(ObjectInfoDataArray, LeavesTheBytesBehindItAlone)
{
    EXPECT_TRUE(convert({0x01, 0x00, 0x00, 0x00, 0x05, 0x00, 0x06, 0x00}));
    EXPECT_THAT(elements_, ElementsAre(5));
}

}  // namespace
}  // namespace nivor::test
