#include "logging/RollingLoggerFixture.h"
#include "support/TimeZone.h"

#include <optional>

namespace nivor::test {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr sys_seconds epoch{};
// 2024-05-01T09:30:00Z.
constexpr sys_seconds may{seconds(1'714'555'800)};

class RollingLoggerLastLogTime : public RollingLoggerFixture {
protected:
    RollingLoggerLastLogTime() { createFolder(); }

    /// The last log time of a file with this text.
    std::optional<sys_seconds> timeOf(std::string_view text)
    {
        setText(log1(), text);
        return logger_.getLastLogTime(log1());
    }

    TimeZone utc_{"UTC"};
};

TEST_F(RollingLoggerLastLogTime, IsTheEpochWithoutAFile)
{
    EXPECT_EQ(logger_.getLastLogTime(log1()), epoch);
}

TEST_F(RollingLoggerLastLogTime, IsTheEpochForAnEmptyFile)
{
    EXPECT_EQ(timeOf(""), epoch);
}

TEST_F(RollingLoggerLastLogTime, IsTheEpochWithoutARecord)
{
    EXPECT_EQ(timeOf("some text\n<log>\n"), epoch);
}

TEST_F(RollingLoggerLastLogTime, IsTheEpochForAFolder)
{
    EXPECT_EQ(logger_.getLastLogTime(folder()), epoch);
}

TEST_F(RollingLoggerLastLogTime, IsTheEpochForAFileThatIsNotUtf8)
{
    EXPECT_EQ(timeOf(recordOf(nowStamp) + "\xFF\n"), epoch);
    EXPECT_EQ(timeOf("\xC3\n" + recordOf(nowStamp)), epoch);
    // Half a surrogate pair, and a slash in two bytes.
    EXPECT_EQ(timeOf("\xED\xA0\x80\n" + recordOf(nowStamp)), epoch);
    EXPECT_EQ(timeOf("\xC0\xAF\n" + recordOf(nowStamp)), epoch);
    // The last character is cut off.
    EXPECT_EQ(timeOf(recordOf(nowStamp) + "\xE6\x98"), epoch);
}

TEST_F(RollingLoggerLastLogTime, IsThatOfTheLastRecord)
{
    EXPECT_EQ(timeOf(recordOf(earlier) + recordOf(nowStamp)), may);
    EXPECT_EQ(timeOf(recordOf("2030-01-01T00:00:00Z") + recordOf(nowStamp)), may);
}

TEST_F(RollingLoggerLastLogTime, IsFoundBehindAnyCharacters)
{
    EXPECT_EQ(timeOf("\xE6\x98\xA0 \xF0\x9F\x8E\xAC\n" + std::string(1, '\0') + "\n"
                     + recordOf(nowStamp)),
              may);
}

TEST_F(RollingLoggerLastLogTime, IgnoresLinesWithoutTheMarkerBehindTheLastRecord)
{
    EXPECT_EQ(timeOf(recordOf(nowStamp) + "more\nand more\n\n\n<log>"), may);
}

TEST_F(RollingLoggerLastLogTime, IsFoundFarFromTheEndOfALongFile)
{
    EXPECT_EQ(timeOf(recordOf(nowStamp) + std::string(6 * 1024 * 1024, 'x')), may);
}

TEST_F(RollingLoggerLastLogTime, NeedsNoLineFeedAtTheEnd)
{
    EXPECT_EQ(timeOf("<log time=\"2024-05-01T09:30:00Z"), may);
    EXPECT_EQ(timeOf("\n<log time=\"2024-05-01T09:30:00Z\">"), may);
}

TEST_F(RollingLoggerLastLogTime, IgnoresWhatFollowsTheStampInItsLine)
{
    EXPECT_EQ(timeOf("<log time=\"2024-05-01T09:30:00Z and so on\n"), may);
    EXPECT_EQ(timeOf("<log time=\"2024-05-01T09:30:00Z\">\r\n"), may);
}

TEST_F(RollingLoggerLastLogTime, IsTakenFromTheStartOfTheLineWhereverTheMarkerIs)
{
    // The marker stands behind a stamp that is where one should be.
    EXPECT_EQ(
        timeOf("12345678901" + std::string(nowStamp) + "<log time=\"2030-01-01T00:00:00Z\"\n"),
        may);
}

TEST_F(RollingLoggerLastLogTime, CannotBeReadWhenTheMarkerIsNotAtTheStartOfItsLine)
{
    EXPECT_EQ(timeOf(recordOf(earlier) + "    <message><log time=\"2024-05-01T09:30:00Z\">\n"),
              std::nullopt);
    EXPECT_EQ(timeOf(" <log time=\"2024-05-01T09:30:00Z\">\n"), std::nullopt);
}

TEST_F(RollingLoggerLastLogTime, CountsCharactersNotBytes)
{
    // Eleven characters in 33 bytes, then a stamp, then the marker.
    std::string eleven;
    for (int i = 0; i < 11; ++i)
        eleven += "\xE6\x98\xA0";
    EXPECT_EQ(timeOf(eleven + std::string(nowStamp) + "<log time=\"\n"), may);

    // A character beyond the basic plane counts as two.
    EXPECT_EQ(timeOf("123456789\xF0\x9F\x8E\xAC" + std::string(nowStamp) + "<log time=\"\n"), may);

    // A byte order mark counts, at the start of the file as anywhere else.
    EXPECT_EQ(timeOf("\xEF\xBB\xBF" + recordOf(nowStamp)), std::nullopt);
    EXPECT_EQ(timeOf("\n\xEF\xBB\xBF" + recordOf(nowStamp)), std::nullopt);
}

TEST_F(RollingLoggerLastLogTime, CannotBeReadFromALineThatEndsTooSoon)
{
    EXPECT_EQ(timeOf("<log time=\""), std::nullopt);
    EXPECT_EQ(timeOf("<log time=\"2024-05-01T09:30:00\n"), std::nullopt);
    EXPECT_EQ(timeOf("<log time=\"\n2024-05-01T09:30:00Z\n"), std::nullopt);
}

TEST_F(RollingLoggerLastLogTime, CannotBeReadWhenTheLastStampIsNotOne)
{
    EXPECT_EQ(timeOf(recordOf(earlier) + recordOf("2024-13-01T00:00:00Z")), std::nullopt);
}

TEST_F(RollingLoggerLastLogTime, TakesTheDigitsAsLocalTime)
{
    const TimeZone tokyo("Asia/Tokyo");
    EXPECT_EQ(timeOf(recordOf(nowStamp)), may - std::chrono::hours(9));
}

TEST_F(RollingLoggerLastLogTime, FollowsSummerTime)
{
    const TimeZone berlin("Europe/Berlin");
    EXPECT_EQ(timeOf(recordOf("2024-05-01T09:30:00Z")), may - std::chrono::hours(2));
    // 2024-01-15T12:00:00Z less the hour of winter time.
    EXPECT_EQ(timeOf(recordOf("2024-01-15T12:00:00Z")), sys_seconds(seconds(1'705'316'400)));
}

TEST_F(RollingLoggerLastLogTime, CannotBeReadInTheHourThatSummerTimeSkips)
{
    const TimeZone berlin("Europe/Berlin");
    EXPECT_EQ(timeOf(recordOf("2024-03-31T02:30:00Z")), std::nullopt);
    EXPECT_EQ(timeOf(recordOf("2024-03-31T03:00:00Z")), sys_seconds(seconds(1'711'846'800)));
}

TEST_F(RollingLoggerLastLogTime, MayLieBeforeTheEpoch)
{
    const TimeZone tokyo("Asia/Tokyo");
    EXPECT_EQ(timeOf(recordOf("1970-01-01T00:00:00Z")), epoch - std::chrono::hours(9));
}

}  // namespace
}  // namespace nivor::test
