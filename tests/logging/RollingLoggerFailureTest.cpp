#include "logging/RollingLoggerFixture.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <sys/resource.h>
#include <unistd.h>

namespace nivor::test {
namespace {

namespace fs = std::filesystem;

using RollingLoggerFailure = RollingLoggerFixture;

/// Gives up the rights of the superuser, who may write anywhere, while it lives.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        if (before_ == 0 && ::seteuid(65'534) != 0)
            throw std::runtime_error("the superuser can't become another user");
    }
    ~OrdinaryUser()
    {
        if (before_ == 0 && ::seteuid(0) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    const uid_t before_ = ::geteuid();
};

TEST_F(RollingLoggerFailure, LosesTheRecordInAFolderThatMayNotBeWrittenToAndTriesAgain)
{
    createFolder();
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);
    {
        const OrdinaryUser user;
        writeRecord();
    }
    EXPECT_FALSE(fs::exists(log1()));

    fs::permissions(folder(), fs::perms::owner_all);
    writeRecord();
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhereNobodyMayCreateAFolder)
{
    logger_.setSaveDirectory("/proc/self/none/KAVRO");
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), "/proc/self/none/KAVRO/NIVOR File TransferLog.1.log");
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhenTheFolderIsAFileAndTriesAgain)
{
    fs::create_directories(folder().parent_path());
    setText(folder(), "a file");
    writeRecord();
    EXPECT_EQ(textOf(folder()), "a file");

    fs::remove(folder());
    writeRecord();
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhenAFolderAboveIsAFile)
{
    setText(folder().parent_path(), "a file");
    writeRecord();

    EXPECT_EQ(textOf(folder().parent_path()), "a file");
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhenTheLogFileIsAFolder)
{
    fs::create_directories(log1());
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_TRUE(fs::is_empty(log1()));
    EXPECT_FALSE(fs::exists(log2()));
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhenTheLogFileMayNotBeWrittenTo)
{
    writeRecord();
    fs::permissions(log1(), fs::perms::owner_read);
    fs::permissions(temporary_.path(), fs::perms::all);
    {
        const OrdinaryUser user;
        writeRecord();
    }

    // Neither another file nor another choice: the target is there and has room.
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
    EXPECT_EQ(logger_.targetLogName(), log1());
    EXPECT_FALSE(fs::exists(log2()));
}

TEST_F(RollingLoggerFailure, LosesTheRecordOnAFullDiskAndTriesAgain)
{
    ASSERT_TRUE(fs::exists("/dev/full"));
    createFolder();
    fs::create_symlink("/dev/full", log1());
    writeRecord();
    EXPECT_EQ(logger_.targetLogName(), log1());

    fs::remove(log1());
    writeRecord();
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
}

TEST_F(RollingLoggerFailure, KeepsWhatFittedWhenTheDiskFillsWithinARecord)
{
    writeRecord();
    const auto size = fs::file_size(log1());

    // A file may grow by ten bytes, as on a disk with ten bytes left.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight{size + 10, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    writeRecord();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handlerBefore);

    EXPECT_EQ(textOf(log1()), recordOf(nowStamp) + recordOf(nowStamp).substr(0, 10));
    writeRecord();
    EXPECT_EQ(textOf(log1()),
              recordOf(nowStamp) + recordOf(nowStamp).substr(0, 10) + recordOf(nowStamp));
}

TEST_F(RollingLoggerFailure, LosesTheRecordWhenTheOtherFileCannotBeEmptied)
{
    createFolder();
    setFileOfSize(log1(), RollingLogger::fullSize, earlier);
    fs::create_directories(log2());
    writeRecord();

    EXPECT_EQ(logger_.targetLogName(), log2());
    EXPECT_EQ(logger_.getFileSize(log1()), RollingLogger::fullSize);
}

TEST_F(RollingLoggerFailure, LosesEveryRecordUntilAFolderIsSet)
{
    RollingLogger logger;
    logger.writeToFile("C", "p:", "m");
    logger.selectLogFile();
    EXPECT_TRUE(logger.targetLogName().empty());

    logger.setSaveDirectory(temporary_.path());
    logger.writeToFile("C", "p:", "m");
    EXPECT_EQ(logger.targetLogName(), temporary_.path() / "Log.1.log");
}

TEST_F(RollingLoggerFailure, AbsorbsAClockThatFails)
{
    RollingLogger logger([]() -> std::chrono::system_clock::time_point {
        throw std::runtime_error("the clock has stopped");
    });
    logger.setSaveDirectory(temporary_.path());
    EXPECT_NO_THROW(logger.writeToFile("C", "p:", "m"));
    EXPECT_EQ(textOf(temporary_.path() / "Log.1.log"), "");
}

TEST_F(RollingLoggerFailure, AbsorbsAFolderNameThatIsTooLong)
{
    logger_.setSaveDirectory(temporary_.path() / std::string(10'000, 'x'));
    EXPECT_NO_THROW(writeRecord());
}

TEST_F(RollingLoggerFailure, TakesAnUnreadableFileForOneWithoutRecords)
{
    createFolder();
    setText(log1(), recordOf(nowStamp));
    setText(log2(), recordOf(earlier));
    fs::permissions(log1(), fs::perms::owner_write);
    fs::permissions(log2(), fs::perms::all);
    fs::permissions(temporary_.path(), fs::perms::all);
    {
        const OrdinaryUser user;
        logger_.selectLogFile();
    }
    EXPECT_EQ(logger_.targetLogName(), log2());
}

}  // namespace
}  // namespace nivor::test
