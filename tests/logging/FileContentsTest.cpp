#include "logging/FileContents.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>

namespace nivor::test {
namespace {

class FileContents : public ::testing::Test {
protected:
    TemporaryDirectory temporary_;
    std::string path_ = temporary_.path() / "file";
};

TEST_F(FileContents, AreEveryByte)
{
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{65'536}, std::size_t{5'242'880}}) {
        const std::string bytes(size, '\0');
        std::ofstream(path_, std::ios::binary) << bytes;
        EXPECT_TRUE(contentsOfFile(path_) == bytes) << size;
    }
}

TEST_F(FileContents, AreNothingWithoutAFile)
{
    EXPECT_EQ(contentsOfFile(path_), std::nullopt);
}

TEST_F(FileContents, AreNothingForAFolder)
{
    EXPECT_EQ(contentsOfFile(temporary_.path()), std::nullopt);
}

TEST_F(FileContents, AreNothingForADeviceThatNeverEnds)
{
    EXPECT_EQ(contentsOfFile("/dev/zero"), std::nullopt);
}

TEST_F(FileContents, MayBeLongerThanTheFileSays)
{
    // Says 0 bytes, but holds the name of this process.
    const auto contents = contentsOfFile("/proc/self/comm");
    ASSERT_TRUE(contents);
    EXPECT_GT(contents->size(), 1U);
}

}  // namespace
}  // namespace nivor::test
