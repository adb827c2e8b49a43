#include "logging/AppendingFile.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace nivor::test {
namespace {

class AppendingFileTest : public ::testing::Test {
protected:
    AppendingFileTest() { std::ofstream(path_) << "begin"; }

    [[nodiscard]] std::string text() const
    {
        std::ifstream file(path_);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    TemporaryDirectory temporary_;
    std::string path_ = temporary_.path() / "file";
};

TEST_F(AppendingFileTest, AddsAtTheEnd)
{
    AppendingFile file(path_);
    file.append(" one");
    file.append(" two");
    EXPECT_EQ(text(), "begin one two");
}

TEST_F(AppendingFileTest, FollowsTheEndThatOthersMove)
{
    AppendingFile file(path_);
    AppendingFile other(path_);
    other.append(" other");
    file.append(" one");
    EXPECT_EQ(text(), "begin other one");
}

TEST_F(AppendingFileTest, TellsTheSize)
{
    AppendingFile file(path_);
    EXPECT_EQ(file.sizeInPlace(), 5);
    file.append("12");
    EXPECT_EQ(file.sizeInPlace(), 7);
}

TEST_F(AppendingFileTest, TellsWhenItIsNoLongerInItsPlace)
{
    AppendingFile file(path_);
    std::filesystem::rename(path_, temporary_.path() / "moved");
    EXPECT_EQ(file.sizeInPlace(), std::nullopt);
    std::ofstream(path_) << "another";
    EXPECT_EQ(file.sizeInPlace(), std::nullopt);
}

TEST_F(AppendingFileTest, CanBeReplacedByAnother)
{
    AppendingFile file;
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.sizeInPlace(), std::nullopt);
    file = AppendingFile(path_);
    EXPECT_EQ(file.path(), path_);
    file.append(" one");
    EXPECT_EQ(text(), "begin one");
}

TEST_F(AppendingFileTest, CreatesNoFile)
{
    const std::string missing = temporary_.path() / "missing";
    AppendingFile file(missing);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.sizeInPlace(), std::nullopt);
    file.append("dropped");
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(AppendingFileTest, OpensNoFolder)
{
    EXPECT_FALSE(AppendingFile(temporary_.path()).isOpen());
}

TEST_F(AppendingFileTest, DropsWhatAFullDiskDoesNotTake)
{
    AppendingFile file("/dev/full");
    EXPECT_TRUE(file.isOpen());
    file.append("dropped");
}

TEST_F(AppendingFileTest, HandsItsFileOnWhenMoved)
{
    AppendingFile file(path_);
    AppendingFile heir(std::move(file));
    heir.append(" one");
    EXPECT_EQ(text(), "begin one");
}

TEST_F(AppendingFileTest, ClosesItsFile)
{
    const auto nextDescriptor = [this] {
        const int descriptor = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        ::close(descriptor);
        return descriptor;
    };
    const int before = nextDescriptor();
    {
        AppendingFile file(path_);
        const AppendingFile heir(std::move(file));
    }
    EXPECT_EQ(nextDescriptor(), before);
}

}  // namespace
}  // namespace nivor::test
