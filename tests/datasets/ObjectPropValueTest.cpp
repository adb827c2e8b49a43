#include "datasets/ObjectPropValue.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "foundation/Errors.h"
#include "support/HeapBytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace nivor::test {
namespace {

/// The answer to a GetObjectPropValue of ObjectSize: 4 GiB.
const ByteBuffer fourGibibytes{
    0x14, 0x00, 0x00, 0x00,                          // container length, 20
    0x02, 0x00,                                      // container type, data
    0x03, 0x98,                                      // GetObjectPropValue
    0x05, 0x00, 0x00, 0x00,                          // transaction ID
    0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,  // ObjectSize
};

TEST(ObjectPropValue, HasNoValueAtFirst)
{
    EXPECT_EQ(ObjectPropValue().value(), std::nullopt);
}

TEST(ObjectPropValue, KeepsTheValueSet)
{
    ObjectPropValue value;
    value.setValue(0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(value.value(), 0xFFFFFFFFFFFFFFFF);
    value.setValue(std::nullopt);
    EXPECT_EQ(value.value(), std::nullopt);
}

TEST(ObjectPropValue, NeverParses)
{
    ObjectPropValue value;
    try {
        static_cast<void>(value.tryParse(fourGibibytes));
        FAIL() << "parsed";
    } catch (const InternalInconsistencyError& error) {
        EXPECT_STREQ(error.what(), "Must override tryParse: in your subclass");
    }
}

TEST(ObjectPropValueObjectSize, ReadsTheEightBytesBehindTheHeader)
{
    ObjectPropValueObjectSize size;
    EXPECT_TRUE(size.tryParse(HeapBytes(fourGibibytes).view()));
    EXPECT_EQ(size.value(), 4'294'967'296U);
}

TEST(ObjectPropValueObjectSize, ParsesThroughItsBase)
{
    ObjectPropValueObjectSize size;
    ObjectPropValue& base = size;
    EXPECT_TRUE(base.tryParse(fourGibibytes));
    EXPECT_EQ(base.value(), 4'294'967'296U);
}

TEST(ObjectPropValueObjectSize, ReadsTheGreatestSize)
{
    ByteBuffer bytes = fourGibibytes;
    std::fill(bytes.begin() + 12, bytes.end(), std::uint8_t{0xFF});
    ObjectPropValueObjectSize size;
    EXPECT_TRUE(size.tryParse(bytes));
    EXPECT_EQ(size.value(), 0xFFFFFFFFFFFFFFFFU);
}

TEST(ObjectPropValueObjectSize, IgnoresWhatFollowsTheSize)
{
    ByteBuffer bytes = fourGibibytes;
    bytes.push_back(0xFF);
    ObjectPropValueObjectSize size;
    EXPECT_TRUE(size.tryParse(HeapBytes(bytes).view()));
    EXPECT_EQ(size.value(), 4'294'967'296U);
}

TEST(ObjectPropValueObjectSize, RaisesARangeErrorBelowTwentyBytes)
{
    for (std::size_t length = 0; length < 20; ++length) {
        const HeapBytes cut(ByteView(fourGibibytes).first(length));
        ObjectPropValueObjectSize size;
        size.setValue(1);
        EXPECT_THROW(static_cast<void>(size.tryParse(cut.view())), RangeError) << length;
        EXPECT_EQ(size.value(), 1U);
    }
}

}  // namespace
}  // namespace nivor::test
