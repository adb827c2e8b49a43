#include "foundation/DigitShape.h"

#include <gtest/gtest.h>

namespace nivor::test {
namespace {

TEST(DigitShape, HasADigitForEveryZero)
{
    EXPECT_TRUE(hasShape(u"09:59", u"00:00"));
    EXPECT_TRUE(hasShape(u"0123456789", u"0000000000"));
    for (const char16_t* text :
         {u"0 :00", u"+1:00", u"-1:00", u"a0:00", u"/0:00", u"::00:", u"00:0\uFF10"})
        EXPECT_FALSE(hasShape(text, u"00:00"));
}

TEST(DigitShape, HasEverythingElseAsItIs)
{
    EXPECT_TRUE(hasShape(u"1T2Z", u"0T0Z"));
    EXPECT_FALSE(hasShape(u"1t2Z", u"0T0Z"));
    EXPECT_FALSE(hasShape(u"112Z", u"0T0Z"));
}

TEST(DigitShape, HasTheSameLength)
{
    EXPECT_TRUE(hasShape(u"", u""));
    EXPECT_FALSE(hasShape(u"", u"0"));
    EXPECT_FALSE(hasShape(u"1", u"00"));
    EXPECT_FALSE(hasShape(u"123", u"00"));
}

TEST(DigitShape, IsReadAsANumber)
{
    EXPECT_EQ(numberOf(u"0"), 0);
    EXPECT_EQ(numberOf(u"007"), 7);
    EXPECT_EQ(numberOf(u"2024"), 2024);
    EXPECT_EQ(numberOf(u"999999999"), 999'999'999);
}

}  // namespace
}  // namespace nivor::test
