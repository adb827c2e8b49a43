#include "content/ByteCountFormatter.h"

#include <gtest/gtest.h>

using namespace nivor;

namespace {

std::string shownCount(std::uint64_t bytes, const QLocale& locale = QLocale(QLocale::English))
{
    return ByteCountFormatter(locale).stringFromByteCount(bytes).toStdString();
}

TEST(ByteCountFormatter, LessThanAMegabyteIsAFractionOfOne)
{
    EXPECT_EQ(shownCount(0), "0 MB");
    EXPECT_EQ(shownCount(1), "0.001 MB");
    EXPECT_EQ(shownCount(6'000), "0.006 MB");
    EXPECT_EQ(shownCount(60'000), "0.06 MB");
    EXPECT_EQ(shownCount(100'000), "0.1 MB");
    EXPECT_EQ(shownCount(950'000), "0.9 MB");
    EXPECT_EQ(shownCount(999'999), "1 MB");
}

TEST(ByteCountFormatter, MegabytesHaveOneDigitAndNoZeroThatSaysNothing)
{
    EXPECT_EQ(shownCount(1'000'000), "1 MB");
    EXPECT_EQ(shownCount(18'449'000), "18.4 MB");
    EXPECT_EQ(shownCount(100'000'000), "100 MB");
    EXPECT_EQ(shownCount(999'949'999), "999.9 MB");
}

TEST(ByteCountFormatter, SeveralGigabytesAreShownInThem)
{
    EXPECT_EQ(shownCount(999'950'000), "1 GB");
    EXPECT_EQ(shownCount(5'368'709'120), "5.37 GB");
    EXPECT_EQ(shownCount(2'500'000'000), "2.5 GB");
    EXPECT_EQ(shownCount(12'000'000'000'000), "12,000 GB");
}

TEST(ByteCountFormatter, NumbersAreWrittenAsTheLocaleHasThem)
{
    EXPECT_EQ(shownCount(18'449'000, QLocale(QLocale::German)), "18,4 MB");
    EXPECT_EQ(shownCount(2'000'000, QLocale(QLocale::German)), "2 MB");
}

}  // namespace
