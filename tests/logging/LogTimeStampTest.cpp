#include "logging/LogTimeStamp.h"
#include "support/TimeZone.h"

#include <gtest/gtest.h>

#include <QString>

namespace nivor::test {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr sys_seconds at(std::int64_t secondsSinceEpoch)
{
    return sys_seconds(seconds(secondsSinceEpoch));
}

std::optional<sys_seconds> parse(const char* text)
{
    return parseLogTimeStamp(QString::fromUtf8(text).toStdU16String());
}

TEST(LogTimeStamp, IsAlwaysTwentyCharacters)
{
    for (const std::int64_t second : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{951'782'400},
                                      std::int64_t{253'402'300'799}})
        EXPECT_EQ(formatLogTimeStamp(at(second)).size(), logTimeStampLength);
}

TEST(LogTimeStamp, ShowsUtcInAnyZone)
{
    const TimeZone tokyo("Asia/Tokyo");
    EXPECT_EQ(formatLogTimeStamp(at(0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(formatLogTimeStamp(at(1'714'555'800)), "2024-05-01T09:30:00Z");
}

TEST(LogTimeStamp, ShowsLeapDaysAndYearEnds)
{
    EXPECT_EQ(formatLogTimeStamp(at(951'782'400)), "2000-02-29T00:00:00Z");
    EXPECT_EQ(formatLogTimeStamp(at(1'704'067'199)), "2023-12-31T23:59:59Z");
    EXPECT_EQ(formatLogTimeStamp(at(-1)), "1969-12-31T23:59:59Z");
}

TEST(LogTimeStamp, IsReadBackInUtc)
{
    const TimeZone utc("UTC");
    for (const std::int64_t second : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{951'782'400},
                                      std::int64_t{1'714'555'800}, std::int64_t{4'102'444'800}}) {
        const std::string text = formatLogTimeStamp(at(second));
        EXPECT_EQ(parse(text.c_str()), at(second)) << text;
    }
}

struct Malformed {
    const char* name;
    const char* text;
};

class MalformedLogTimeStamp : public ::testing::TestWithParam<Malformed> { };

TEST_P(MalformedLogTimeStamp, IsNoTime)
{
    EXPECT_EQ(parse(GetParam().text), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    With, MalformedLogTimeStamp,
    ::testing::Values(
        Malformed{"Nothing", ""}, Malformed{"NoZ", "2024-05-01T09:30:00"},
        Malformed{"BlankBehind", "2024-05-01T09:30:00Z "},
        Malformed{"BlankBefore", " 2024-05-01T09:30:0Z"}, Malformed{"NoT", "2024-05-01 09:30:00Z"},
        Malformed{"SmallLetters", "2024-05-01t09:30:00z"},
        Malformed{"Slashes", "2024/05/01T09:30:00Z"},
        Malformed{"OtherWidths", "2024-5-001T09:30:00Z"}, Malformed{"Sign", "2024-+5-01T09:30:00Z"},
        Malformed{"BlankForADigit", "2024- 5-01T09:30:00Z"},
        Malformed{"NegativeYear", "-024-05-01T09:30:00Z"},
        Malformed{"Year0", "0000-05-01T09:30:00Z"}, Malformed{"Month0", "2024-00-01T09:30:00Z"},
        Malformed{"Month13", "2024-13-01T09:30:00Z"}, Malformed{"Day0", "2024-05-00T09:30:00Z"},
        Malformed{"Day32", "2024-05-32T09:30:00Z"}, Malformed{"NoLeapYear", "2023-02-29T09:30:00Z"},
        Malformed{"Hour24", "2024-05-01T24:00:00Z"}, Malformed{"Minute60", "2024-05-01T09:60:00Z"},
        Malformed{"Second60", "2024-05-01T09:30:60Z"},
        Malformed{"WideDigit",
                  "\xEF\xBC\x92"
                  "024-05-01T09:30:00Z"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace nivor::test
