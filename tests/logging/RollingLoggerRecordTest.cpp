#include "logging/RollingLoggerFixture.h"

namespace nivor::test {
namespace {

using RollingLoggerRecord = RollingLoggerFixture;

TEST_F(RollingLoggerRecord, HasSixLines)
{
    logger_.writeToFile("AppDelegate",
                        "applicationDidFinishLaunching:", "Application start (ver1.0)");

    EXPECT_EQ(textOf(log1()),
              "<log time=\"2024-05-01T09:30:00Z\">\n"
              "  <NIVOR_File_Transfer>\n"
              "    <event>AppDelegate applicationDidFinishLaunching:</event>\n"
              "    <message>Application start (ver1.0)</message>\n"
              "  </NIVOR_File_Transfer>\n"
              "</log>\n");
}

TEST_F(RollingLoggerRecord, FollowsTheOneBefore)
{
    writeRecord();
    now_ += 61'000;
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp) + recordOf("2024-05-01T09:31:01Z"));
}

TEST_F(RollingLoggerRecord, FollowsWhateverTheFileHolds)
{
    createFolder();
    setText(log1(), "no line feed at the end");
    writeRecord();

    EXPECT_EQ(textOf(log1()), "no line feed at the end" + recordOf(nowStamp));
}

TEST_F(RollingLoggerRecord, IsStampedWithTheSecondBegun)
{
    now_ += 999;
    writeRecord();
    now_ += 1;
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp) + recordOf("2024-05-01T09:30:01Z"));
}

TEST_F(RollingLoggerRecord, FollowsAClockThatIsPutBack)
{
    writeRecord();
    now_ -= 3'600'000;
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp) + recordOf("2024-05-01T08:30:00Z"));
}

TEST_F(RollingLoggerRecord, IsStampedByTheSystemClockUnlessTold)
{
    using std::chrono::system_clock;
    RollingLogger logger;
    logger.setSaveDirectory(temporary_.path());
    const auto before = system_clock::now();
    logger.writeToFile("C", "p:", "m");

    // The digits are UTC; counting back from a day later and forward from a day before covers
    // every zone they may be read in.
    const auto time = logger.getLastLogTime(temporary_.path() / "Log.1.log");
    ASSERT_TRUE(time);
    EXPECT_GT(*time, before - std::chrono::days(1));
    EXPECT_LT(*time, before + std::chrono::days(1));
}

TEST_F(RollingLoggerRecord, KeepsAMessageWithMarkupVerbatim)
{
    logger_.writeToFile("C", "p:", "1 < 2 && \"3\" > '2' </message>");

    EXPECT_THAT(textOf(log1()),
                ::testing::HasSubstr("\n    <message>1 < 2 && \"3\" > '2' </message></message>\n"));
}

TEST_F(RollingLoggerRecord, KeepsAMessageWithALineFeedVerbatim)
{
    logger_.writeToFile("C", "p:", "one\ntwo\n");

    EXPECT_THAT(textOf(log1()), ::testing::HasSubstr("\n    <message>one\ntwo\n</message>\n"));
}

TEST_F(RollingLoggerRecord, KeepsMarkupInTheNamesVerbatim)
{
    logger_.writeToFile("C<T>", "p&:", "m");

    EXPECT_THAT(textOf(log1()), ::testing::HasSubstr("\n    <event>C<T> p&:</event>\n"));
}

TEST_F(RollingLoggerRecord, IsWrittenInUtf8)
{
    logger_.writeToFile("C", "p:", "\xE6\x98\xA0\xE7\x94\xBB \xF0\x9F\x8E\xAC");

    EXPECT_THAT(
        textOf(log1()),
        ::testing::HasSubstr("<message>\xE6\x98\xA0\xE7\x94\xBB \xF0\x9F\x8E\xAC</message>"));
}

TEST_F(RollingLoggerRecord, KeepsANullInTheMessage)
{
    logger_.writeToFile("C", "p:", std::string_view("a\0b", 3));

    EXPECT_THAT(textOf(log1()), ::testing::HasSubstr(std::string("<message>a\0b</message>", 22)));
}

TEST_F(RollingLoggerRecord, HasSixLinesWithEmptyTextsToo)
{
    logger_.writeToFile({}, {}, {});

    EXPECT_EQ(textOf(log1()),
              "<log time=\"2024-05-01T09:30:00Z\">\n"
              "  <NIVOR_File_Transfer>\n"
              "    <event> </event>\n"
              "    <message></message>\n"
              "  </NIVOR_File_Transfer>\n"
              "</log>\n");
}

TEST_F(RollingLoggerRecord, MayBeLong)
{
    const std::string message(3 * 1024 * 1024, 'm');
    logger_.writeToFile("C", "p:", message);

    EXPECT_THAT(textOf(log1()), ::testing::HasSubstr("<message>" + message + "</message>\n"));
}

TEST_F(RollingLoggerRecord, TakesItsElementNameFromTheProgramNotFromTheBaseName)
{
    logger_.setLogBaseName("Foo Bar");
    writeRecord();

    EXPECT_EQ(textOf(folder() / "Foo BarLog.1.log"), recordOf(nowStamp));
}

TEST_F(RollingLoggerRecord, IsOnDiskAtOnce)
{
    writeRecord();

    EXPECT_EQ(std::filesystem::file_size(log1()), recordOf(nowStamp).size());
}

}  // namespace
}  // namespace nivor::test
