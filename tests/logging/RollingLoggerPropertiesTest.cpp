#include "logging/RollingLoggerFixture.h"

#include <cstdlib>
#include <optional>

#include <pwd.h>
#include <unistd.h>

namespace nivor::test {
namespace {

TEST(RollingLoggerProperties, AreEmptyUntilSet)
{
    const RollingLogger logger;
    EXPECT_EQ(logger.logBaseName(), "");
    EXPECT_EQ(logger.saveDirectory(), "");
    EXPECT_EQ(logger.targetLogName(), "");
}

TEST(RollingLoggerProperties, AreKeptAsSet)
{
    RollingLogger logger;
    logger.setLogBaseName("Foo Bar");
    logger.setSaveDirectory("/some where");
    logger.setTargetLogName("/else where/file");
    EXPECT_EQ(logger.logBaseName(), "Foo Bar");
    EXPECT_EQ(logger.saveDirectory(), "/some where");
    EXPECT_EQ(logger.targetLogName(), "/else where/file");

    logger.setTargetLogName({});
    EXPECT_EQ(logger.targetLogName(), "");
}

TEST(RollingLoggerProperties, BelongToOneLoggerInTheWholeProcess)
{
    EXPECT_EQ(&RollingLogger::sharedManager(), &RollingLogger::sharedManager());
}

TEST(RollingLoggerProperties, NameTheProgram)
{
    EXPECT_EQ(RollingLogger::programName, "NIVOR File Transfer");
    EXPECT_EQ(RollingLogger::fullSize, 0x500000);
}

class RollingLoggerDefaultDirectory : public ::testing::Test {
protected:
    RollingLoggerDefaultDirectory()
    {
        if (const char* const home = std::getenv("HOME"))
            home_ = home;
    }
    ~RollingLoggerDefaultDirectory() override
    {
        if (home_)
            ::setenv("HOME", home_->c_str(), 1);
        else
            ::unsetenv("HOME");
    }

    static constexpr const char* below =
        "Library/Application Support/KAVRO/NIVOR File Transfer for Mac";

private:
    std::optional<std::string> home_;
};

TEST_F(RollingLoggerDefaultDirectory, LiesBelowHome)
{
    ::setenv("HOME", "/home of/somebody", 1);
    EXPECT_EQ(RollingLogger::defaultDirectory(),
              std::filesystem::path("/home of/somebody") / below);
}

TEST_F(RollingLoggerDefaultDirectory, LiesBelowTheAccountsFolderWithoutHome)
{
    const passwd* const account = ::getpwuid(::getuid());
    ASSERT_NE(account, nullptr);
    const std::filesystem::path expected = std::filesystem::path(account->pw_dir) / below;

    ::unsetenv("HOME");
    EXPECT_EQ(RollingLogger::defaultDirectory(), expected);
    ::setenv("HOME", "", 1);
    EXPECT_EQ(RollingLogger::defaultDirectory(), expected);
}

}  // namespace
}  // namespace nivor::test
