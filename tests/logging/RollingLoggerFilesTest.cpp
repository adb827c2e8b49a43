#include "logging/RollingLoggerFixture.h"

namespace nivor::test {
namespace {

namespace fs = std::filesystem;

using RollingLoggerFiles = RollingLoggerFixture;

TEST_F(RollingLoggerFiles, MakesTheFileOfTheTargetNotOfTheArgument)
{
    logger_.setTargetLogName(log2());
    logger_.makeFile(log1());

    EXPECT_FALSE(fs::exists(log1()));
    EXPECT_TRUE(fs::exists(log2()));
}

TEST_F(RollingLoggerFiles, EmptiesAnExistingFileWhenItMakesOne)
{
    createFolder();
    setText(log1(), recordOf(earlier));
    logger_.setTargetLogName(log1());
    logger_.makeFile(log1());

    EXPECT_EQ(logger_.getFileSize(log1()), 0);
}

TEST_F(RollingLoggerFiles, MakesTheFolderThoughThereIsNoTarget)
{
    logger_.makeFile({});

    EXPECT_TRUE(fs::is_directory(folder()));
    EXPECT_TRUE(fs::is_empty(folder()));
}

TEST_F(RollingLoggerFiles, TellsTheSizeOfAFile)
{
    createFolder();
    setText(log1(), "12345");

    EXPECT_EQ(logger_.getFileSize(log1()), 5);
    EXPECT_EQ(logger_.getFileSize(log2()), 0);
}

}  // namespace
}  // namespace nivor::test
