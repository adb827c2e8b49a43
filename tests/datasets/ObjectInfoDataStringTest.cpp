#include "datasets/ObjectInfoData.h"
#include "support/HeapBytes.h"

#include <gtest/gtest.h>

#include <bit>

namespace nivor::test {
namespace {

using Conversion = bool (*)(std::optional<ByteView>, QString&);

/// Both conversions decode in the same way.
class ObjectInfoDataString : public ::testing::TestWithParam<Conversion> {
protected:
    bool convert(const ByteBuffer& bytes) { return GetParam()(HeapBytes(bytes).view(), text_); }

    QString text_ = QStringLiteral("untouched");
};

TEST_P(ObjectInfoDataString, FailsWithoutBytes)
{
    EXPECT_FALSE(GetParam()(std::nullopt, text_));
    EXPECT_EQ(text_, QStringLiteral("untouched"));
}

TEST_P(ObjectInfoDataString, IsEmptyWithACountOfZero)
{
    EXPECT_TRUE(convert({0x00}));
    EXPECT_EQ(text_, QLatin1String(""));
    EXPECT_FALSE(text_.isNull());
}

TEST_P(ObjectInfoDataString, KeepsItsTerminator)
{
    EXPECT_TRUE(convert({0x02, 0x41, 0x00, 0x00, 0x00}));  // count 2, "A", U+0000
    EXPECT_EQ(text_, QString(QStringLiteral("A")) + QChar(u'\0'));
}

TEST_P(ObjectInfoDataString, KeepsWhatFollowsAnEarlyTerminator)
{
    EXPECT_TRUE(convert({0x03, 0x41, 0x00, 0x00, 0x00, 0x42, 0x00}));  // count 3, A, U+0000, B
    EXPECT_EQ(text_.size(), 3);
    EXPECT_EQ(text_.at(2), QChar(u'B'));
}

TEST_P(ObjectInfoDataString, NeedsNoTerminator)
{
    EXPECT_TRUE(convert({0x01, 0x41, 0x00}));  // count 1, "A"
    EXPECT_EQ(text_, QStringLiteral("A"));
}

TEST_P(ObjectInfoDataString, IsLittleEndian)
{
    EXPECT_TRUE(convert({0x01, 0x20, 0x66}));  // count 1, U+6620
    EXPECT_EQ(text_, QString(QChar(0x6620)));
}

TEST_P(ObjectInfoDataString, KeepsAByteOrderMark)
{
    EXPECT_TRUE(convert({0x02, 0xFF, 0xFE, 0x41, 0x00}));  // count 2, U+FEFF, "A"
    EXPECT_EQ(text_.size(), 2);
    EXPECT_EQ(text_.at(0), QChar(0xFEFF));
}

TEST_P(ObjectInfoDataString, KeepsASurrogatePair)
{
    EXPECT_TRUE(convert({0x02, 0x3C, 0xD8, 0xAC, 0xDF}));  // count 2, U+1F3AC
    EXPECT_EQ(text_, QString::fromUcs4(U"\U0001F3AC"));
}

TEST_P(ObjectInfoDataString, IsNothingWithHalfASurrogatePair)
{
    const ByteBuffer undecodable[] = {
        {0x01, 0x3C, 0xD8},                          // a high half alone
        {0x01, 0xAC, 0xDF},                          // a low half alone
        {0x02, 0x3C, 0xD8, 0x00, 0x00},              // a high half before the terminator
        {0x02, 0xAC, 0xDF, 0x3C, 0xD8},              // the halves the wrong way round
        {0x03, 0x3C, 0xD8, 0x3C, 0xD8, 0xAC, 0xDF},  // a high half too many
    };
    for (const ByteBuffer& bytes : undecodable) {
        text_ = QStringLiteral("before");
        EXPECT_TRUE(convert(bytes));
        EXPECT_TRUE(text_.isNull());
    }
}

TEST_P(ObjectInfoDataString, MayHave255Units)
{
    ByteBuffer bytes{0xFF};
    for (int i = 0; i < 255; ++i)
        bytes.insert(bytes.end(), {0x78, 0x00});
    EXPECT_TRUE(convert(bytes));
    EXPECT_EQ(text_, QString(255, QChar(u'x')));
}

TEST_P(ObjectInfoDataString, FailsWhenItRunsPastItsBytes)
{
    EXPECT_FALSE(convert({}));                  // not even a count
    EXPECT_FALSE(convert({0x01}));              // count 1, no unit
    EXPECT_FALSE(convert({0x01, 0x41}));        // count 1, half a unit
    EXPECT_FALSE(convert({0xFF, 0x41, 0x00}));  // count 255, one unit
    EXPECT_EQ(text_, QStringLiteral("untouched"));
}

TEST_P(ObjectInfoDataString, LeavesTheBytesBehindItAlone)
{
    EXPECT_TRUE(convert({0x01, 0x41, 0x00, 0x42, 0x00}));  // count 1, "A", and more
    EXPECT_EQ(text_, QStringLiteral("A"));
}

INSTANTIATE_TEST_SUITE_P(Of, ObjectInfoDataString,
                         ::testing::Values(&ObjectInfoData::convertByteArrayToNSString,
                                           &ObjectInfoData::convertByteArrayToDateString),
                         [](const auto& test) { return test.index == 0 ? "Text" : "Date"; });

TEST(ObjectInfoDataByteOrder, IsTheHosts)
{
    EXPECT_EQ(ObjectInfoData::isLittleEndian(), std::endian::native == std::endian::little);
    EXPECT_EQ(ObjectInfoData::isLittleEndian(), ObjectInfoData::isLittleEndian());
}

}  // namespace
}  // namespace nivor::test
