#include "datasets/DateFormatter.h"
#include "support/TimeZone.h"

#include <gtest/gtest.h>

#include <string>

namespace nivor::test {
namespace {

QDateTime utc(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

TEST(DateFormatter, ReadsLocalTime)
{
    const TimeZone tokyo("Asia/Tokyo");
    EXPECT_EQ(DateFormatter().dateFromString(QStringLiteral("20160102T030405")),
              utc(2016, 1, 1, 18, 4, 5));
}

TEST(DateFormatter, ShowsLocalTime)
{
    const TimeZone tokyo("Asia/Tokyo");
    const QDateTime date = DateFormatter().dateFromString(QStringLiteral("20160102T030405"));
    EXPECT_EQ(date.date(), QDate(2016, 1, 2));
    EXPECT_EQ(date.time(), QTime(3, 4, 5));
}

TEST(DateFormatter, FollowsSummerTime)
{
    const TimeZone berlin("Europe/Berlin");
    const DateFormatter formatter;
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("20160701T120000")),
              utc(2016, 7, 1, 10, 0, 0));
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("20160101T120000")),
              utc(2016, 1, 1, 11, 0, 0));
}

TEST(DateFormatter, HasNoDateInTheHourThatSummerTimeSkips)
{
    const TimeZone berlin("Europe/Berlin");
    const DateFormatter formatter;
    EXPECT_TRUE(formatter.dateFromString(QStringLiteral("20240331T015959")).isValid());
    EXPECT_FALSE(formatter.dateFromString(QStringLiteral("20240331T023000")).isValid());
    EXPECT_TRUE(formatter.dateFromString(QStringLiteral("20240331T030000")).isValid());
}

TEST(DateFormatter, KeepsTheZoneItWasCreatedIn)
{
    const TimeZone tokyo("Asia/Tokyo");
    const DateFormatter formatter;
    const TimeZone berlin("Europe/Berlin");

    EXPECT_EQ(formatter.dateFromString(QStringLiteral("20160102T030405")),
              utc(2016, 1, 1, 18, 4, 5));
    // A time that is skipped here but not there.
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("20240331T023000")),
              utc(2024, 3, 30, 17, 30, 0));
}

TEST(DateFormatter, ReadsZonesGivenAsARule)
{
    const TimeZone rule("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(DateFormatter().dateFromString(QStringLiteral("20160701T120000")),
              utc(2016, 7, 1, 10, 0, 0));
}

TEST(DateFormatter, ReadsZonesGivenAsAFile)
{
    const TimeZone file("/usr/share/zoneinfo/Asia/Tokyo");
    EXPECT_EQ(DateFormatter().dateFromString(QStringLiteral("20160102T030405")),
              utc(2016, 1, 1, 18, 4, 5));
}

TEST(DateFormatter, ReadsTheEdgesOfTheCalendar)
{
    const TimeZone zone("UTC");
    const DateFormatter formatter;
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("20160229T235959")),
              utc(2016, 2, 29, 23, 59, 59));
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("19700101T000000")),
              utc(1970, 1, 1, 0, 0, 0));
    EXPECT_EQ(formatter.dateFromString(QStringLiteral("99991231T235959")),
              utc(9999, 12, 31, 23, 59, 59));
}

struct Malformed {
    const char* name;
    const char* text;
};

class MalformedDate : public ::testing::TestWithParam<Malformed> { };

TEST_P(MalformedDate, IsNoDate)
{
    EXPECT_FALSE(DateFormatter().dateFromString(QString::fromUtf8(GetParam().text)).isValid());
}

INSTANTIATE_TEST_SUITE_P(
    With, MalformedDate,
    ::testing::Values(
        Malformed{"Nothing", ""}, Malformed{"DayOnly", "20160102"},
        Malformed{"DayAndTOnly", "20160102T"}, Malformed{"NoSeconds", "20160102T0304"},
        Malformed{"Tenths", "20160102T030405.0"}, Malformed{"Z", "20160102T030405Z"},
        Malformed{"Offset", "20160102T030405+0900"}, Malformed{"BlankBefore", " 20160102T030405"},
        Malformed{"BlankBehind", "20160102T030405 "}, Malformed{"NoT", "20160102 030405"},
        Malformed{"SmallT", "20160102t030405"}, Malformed{"Dashes", "2016-01-02T03:04:05"},
        Malformed{"BlankForADigit", "2016 102T030405"},
        Malformed{"SignForADigit", "20160102T+30405"}, Malformed{"Year0", "00000102T030405"},
        Malformed{"Month0", "20160002T030405"}, Malformed{"Month13", "20161302T030405"},
        Malformed{"Day0", "20160100T030405"}, Malformed{"Day32", "20160132T030405"},
        Malformed{"NoLeapYear", "20150229T030405"}, Malformed{"Hour24", "20160102T240000"},
        Malformed{"Minute60", "20160102T036005"}, Malformed{"Second60", "20160102T030460"},
        Malformed{"WideDigit",
                  "\xEF\xBC\x92"
                  "0160102T030405"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace nivor::test
