#include "logging/RollingLoggerFixture.h"

namespace nivor::test {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t full = 5'242'880;

using RollingLoggerSelection = RollingLoggerFixture;

TEST_F(RollingLoggerSelection, CreatesTheFoldersAndTheFirstFileOnTheFirstRun)
{
    ASSERT_FALSE(fs::exists(temporary_.path() / "KAVRO"));
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
    EXPECT_FALSE(fs::exists(log2()));
}

TEST_F(RollingLoggerSelection, CreatesTheFirstFileEmpty)
{
    logger_.selectLogFile();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_TRUE(fs::exists(log1()));
    EXPECT_EQ(logger_.getFileSize(log1()), 0);
}

TEST_F(RollingLoggerSelection, TakesOneMoreRecordAtOneByteBelowTheLimit)
{
    createFolder();
    setFileOfSize(log1(), full - 1, earlier);
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(logger_.getFileSize(log1()),
              full - 1 + static_cast<std::int64_t>(recordOf(nowStamp).size()));
    EXPECT_FALSE(fs::exists(log2()));
}

TEST_F(RollingLoggerSelection, TakesNoMoreRecordsAtTheLimit)
{
    createFolder();
    setFileOfSize(log1(), full, earlier);
    writeRecord();

    EXPECT_EQ(logger_.getFileSize(log1()), full);
    EXPECT_EQ(logger_.targetLogName(), log2());
    EXPECT_EQ(textOf(log2()), recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, KeepsTheTargetAtOneByteBelowTheLimit)
{
    createFolder();
    logger_.setTargetLogName(log2());
    setFileOfSize(log2(), full - 1, earlier);
    writeRecord();

    EXPECT_EQ(logger_.getFileSize(log2()),
              full - 1 + static_cast<std::int64_t>(recordOf(nowStamp).size()));
    EXPECT_FALSE(fs::exists(log1()));
}

TEST_F(RollingLoggerSelection, LeavesTheTargetAtTheLimit)
{
    createFolder();
    logger_.setTargetLogName(log1());
    setFileOfSize(log1(), full, earlier);
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log2());
    EXPECT_EQ(logger_.getFileSize(log1()), full);
    EXPECT_EQ(textOf(log2()), recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, TakesTheSecondFileWhenItIsNewerAndHasRoom)
{
    createFolder();
    setText(log1(), recordOf("2024-04-30T23:59:58Z"));
    setText(log2(), recordOf("2024-04-30T23:59:59Z"));
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf("2024-04-30T23:59:58Z"));
    EXPECT_EQ(textOf(log2()), recordOf("2024-04-30T23:59:59Z") + recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, TakesTheFirstFileWhenItIsNewerAndHasRoom)
{
    createFolder();
    setText(log1(), recordOf("2024-04-30T23:59:59Z"));
    setText(log2(), recordOf("2024-04-30T23:59:58Z"));
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf("2024-04-30T23:59:59Z") + recordOf(nowStamp));
    EXPECT_EQ(textOf(log2()), recordOf("2024-04-30T23:59:58Z"));
}

TEST_F(RollingLoggerSelection, EmptiesTheFirstFileWhenTheSecondIsNewerAndFull)
{
    createFolder();
    setText(log1(), recordOf("2024-04-30T23:59:58Z"));
    setFileOfSize(log2(), full, "2024-04-30T23:59:59Z");
    const std::string second = textOf(log2());
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
    EXPECT_TRUE(textOf(log2()) == second);
}

TEST_F(RollingLoggerSelection, EmptiesTheSecondFileWhenTimesAreEqualAndTheFirstIsFull)
{
    createFolder();
    setFileOfSize(log1(), full, earlier);
    setText(log2(), recordOf(earlier));
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log2());
    EXPECT_EQ(logger_.getFileSize(log1()), full);
    EXPECT_EQ(textOf(log2()), recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, FavoursTheFirstFileWhenTimesAreEqual)
{
    createFolder();
    setText(log1(), recordOf(earlier));
    setText(log2(), recordOf(earlier));
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(textOf(log2()), recordOf(earlier));
}

TEST_F(RollingLoggerSelection, FavoursTheFirstFileWhenNeitherHoldsARecord)
{
    createFolder();
    setText(log1(), "");
    setText(log2(), "");
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
    EXPECT_EQ(textOf(log2()), "");
}

TEST_F(RollingLoggerSelection, TakesTheSecondFileWhenTheFirstIsMissing)
{
    createFolder();
    setText(log2(), recordOf(earlier));
    writeRecord();

    EXPECT_FALSE(fs::exists(log1()));
    EXPECT_EQ(textOf(log2()), recordOf(earlier) + recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, FavoursTheFirstFileWhenItsTimeCannotBeRead)
{
    createFolder();
    setText(log1(), recordOf("2024-13-01T00:00:00Z"));
    setText(log2(), recordOf(earlier));
    logger_.selectLogFile();

    EXPECT_EQ(logger_.targetLogName(), log1());
}

TEST_F(RollingLoggerSelection, FavoursTheFirstFileWhenTheSecondsTimeCannotBeRead)
{
    createFolder();
    setText(log1(), recordOf(earlier));
    setText(log2(), recordOf("yesterday at about 9"));
    logger_.selectLogFile();

    EXPECT_EQ(logger_.targetLogName(), log1());
}

TEST_F(RollingLoggerSelection, AlternatesBetweenTheFilesAsTheyFill)
{
    createFolder();
    setFileOfSize(log1(), full, "2024-05-01T09:00:00Z");
    writeRecord();
    ASSERT_EQ(logger_.targetLogName(), log2());

    setFileOfSize(log2(), full, nowStamp);
    now_ += 1000;
    writeRecord();
    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(textOf(log1()), recordOf("2024-05-01T09:30:01Z"));
    EXPECT_EQ(logger_.getFileSize(log2()), full);
}

TEST_F(RollingLoggerSelection, RecreatesATargetDeletedMeanwhile)
{
    writeRecord();
    fs::remove(log1());
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, MovesToTheOtherFileWhenTheTargetIsDeletedAndTheOtherHoldsRecords)
{
    writeRecord();
    setText(log2(), recordOf(earlier));
    fs::remove(log1());
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log2());
    EXPECT_FALSE(fs::exists(log1()));
    EXPECT_EQ(textOf(log2()), recordOf(earlier) + recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, RecreatesAFolderDeletedMeanwhile)
{
    writeRecord();
    fs::remove_all(temporary_.path() / "KAVRO");
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, StaysWithItsTargetThoughTheOtherBecomesNewer)
{
    writeRecord();
    setText(log2(), recordOf("2030-01-01T00:00:00Z"));
    writeRecord();

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp) + recordOf(nowStamp));
}

TEST_F(RollingLoggerSelection, PutsNothingBetweenBaseNameAndFileName)
{
    logger_.setLogBaseName("Foo");
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), folder() / "FooLog.1.log");
}

TEST_F(RollingLoggerSelection, ReplacesAFullFileEvenWhenItsFolderIsAllThereIs)
{
    createFolder();
    setFileOfSize(log1(), full, earlier);
    ASSERT_FALSE(fs::exists(log2()));
    logger_.selectLogFile();

    EXPECT_TRUE(fs::exists(log2()));
    EXPECT_EQ(logger_.getFileSize(log2()), 0);
}

TEST_F(RollingLoggerSelection, DoesNotCreateTheFolderWhenItEmptiesTheOtherFile)
{
    // The first file is full, but the second would lie in a folder that is missing.
    logger_.setLogBaseName("sub/");
    createFolder();
    const fs::path elsewhere = temporary_.path() / "full";
    setFileOfSize(elsewhere, full, earlier);
    fs::create_directories(folder() / "sub");
    fs::create_symlink(elsewhere, folder() / "sub/Log.1.log");
    fs::create_symlink(folder() / "missing/Log.2.log", folder() / "sub/Log.2.log");
    logger_.selectLogFile();

    EXPECT_EQ(logger_.targetLogName(), folder() / "sub/Log.2.log");
    EXPECT_FALSE(fs::exists(folder() / "missing"));
}

}  // namespace
}  // namespace nivor::test
