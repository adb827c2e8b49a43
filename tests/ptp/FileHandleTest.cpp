#include "ptp/FileHandle.h"

#include "foundation/Errors.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <deque>
#include <fstream>
#include <iterator>

using namespace nivor;
using namespace nivor::test;
using ::testing::HasSubstr;

namespace {

std::string contentsOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

ByteBuffer bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

/// Takes as many bytes per write as it is told; a negative number is an errno.
class MoodyFile : public FileHandle {
public:
    explicit MoodyFile(const std::filesystem::path& path)
        : FileHandle(FileHandle::create(path))
    {
    }

    std::deque<int> moods;

protected:
    ssize_t writeSome(ByteView bytes) override
    {
        if (moods.empty())
            return FileHandle::writeSome(bytes);
        const int mood = moods.front();
        moods.pop_front();
        if (mood < 0) {
            errno = -mood;
            return -1;
        }
        return FileHandle::writeSome(
            bytes.first(std::min(bytes.size(), static_cast<std::size_t>(mood))));
    }
};

int errnoOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const FileError& error) {
        return error.code().value();
    }
    return 0;
}

class FileHandleOperations : public ::testing::Test {
protected:
    TemporaryDirectory directory;
    std::filesystem::path path = directory.path() / "file";
};

TEST_F(FileHandleOperations, WritesCutsAndAppends)
{
    FileHandle file = FileHandle::create(path);
    ASSERT_TRUE(file.isOpen());
    file.writeData(bytesOf("hello, world"));
    file.truncateFile(5);
    file.seekToEndOfFile();
    file.writeData(bytesOf("!"));
    file.synchronizeFile();
    file.closeFile();
    EXPECT_EQ(contentsOf(path), "hello!");
    EXPECT_FALSE(file.isOpen());
}

TEST_F(FileHandleOperations, NeverTouchesAFileThatExists)
{
    std::ofstream(path) << "precious";
    const FileHandle file = FileHandle::create(path);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.openError(), EEXIST);
    EXPECT_EQ(contentsOf(path), "precious");
}

TEST_F(FileHandleOperations, NeverFollowsALinkThatExists)
{
    const std::filesystem::path outside = directory.path() / "outside";
    std::filesystem::create_symlink(outside, path);
    const FileHandle file = FileHandle::create(path);
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(std::filesystem::exists(outside));
}

TEST_F(FileHandleOperations, CreatesInTheOpenFolderWhateverItsPathLeadsTo)
{
    const std::filesystem::path folder = directory.path() / "folder";
    std::filesystem::create_directory(folder);
    const int descriptor = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    std::filesystem::rename(folder, directory.path() / "aside");
    std::filesystem::create_directory(folder);
    const FileHandle file = FileHandle::createIn(descriptor, folder / "a.jpg");
    ::close(descriptor);
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(std::filesystem::exists(directory.path() / "aside" / "a.jpg"));
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(FileHandleOperations, RaisesWhenThereIsNoRoomAndKeepsNothing)
{
    FileHandle file = FileHandle::create(path);
    // More than any file system takes, or has.
    const int error = errnoOf([&] { file.requireRoom(std::uint64_t{1} << 62); });
    EXPECT_THAT(error, ::testing::AnyOf(ENOSPC, EFBIG));
    EXPECT_EQ(file.failure(), error);
    file.closeFile();
    struct stat status { };
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 0);
    EXPECT_EQ(status.st_blocks, 0);
}

TEST_F(FileHandleOperations, LooksForRoomWithoutTakingIt)
{
    FileHandle file = FileHandle::create(path);
    file.requireRoom(1'000'000);
    file.requireRoom(0);
    file.writeData(bytesOf("abc"));
    EXPECT_EQ(file.failure(), 0);
    file.closeFile();
    EXPECT_EQ(contentsOf(path), "abc");
    struct stat status { };
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_LT(status.st_blocks, 1'000'000 / 512);
}

TEST_F(FileHandleOperations, RemembersItsFirstFailure)
{
    MoodyFile file(path);
    file.moods = {-EDQUOT, -EIO};
    errnoOf([&] { file.writeData(bytesOf("a")); });
    errnoOf([&] { file.writeData(bytesOf("a")); });
    EXPECT_EQ(file.failure(), EDQUOT);
}

TEST_F(FileHandleOperations, FinishesAShortWrite)
{
    MoodyFile file(path);
    file.moods = {3, 1};
    file.writeData(bytesOf("abcdefgh"));
    EXPECT_EQ(contentsOf(path), "abcdefgh");
}

TEST_F(FileHandleOperations, RepeatsAnInterruptedWrite)
{
    MoodyFile file(path);
    file.moods = {-EINTR, 2, -EINTR};
    file.writeData(bytesOf("abcd"));
    EXPECT_EQ(contentsOf(path), "abcd");
}

TEST_F(FileHandleOperations, RaisesWhenTheDiskFillsUpInTheMiddle)
{
    MoodyFile file(path);
    file.moods = {3, -ENOSPC};
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("abcdefgh")); }), ENOSPC);
}

TEST_F(FileHandleOperations, RaisesAnInputOutputError)
{
    MoodyFile file(path);
    file.moods = {-EIO};
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("a")); }), EIO);
}

TEST_F(FileHandleOperations, RaisesWhenAWriteTakesNothing)
{
    MoodyFile file(path);
    file.moods = {0};
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("a")); }), ENOSPC);
}

TEST_F(FileHandleOperations, RaisesNoSpaceOnAFullDevice)
{
    FileHandle file = FileHandle::openForWriting("/dev/full");
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("a")); }), ENOSPC);
}

TEST_F(FileHandleOperations, RaisesTheErrorOfItsOpening)
{
    FileHandle file = FileHandle::create(directory.path() / "no" / "such" / "folder");
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("a")); }), ENOENT);
    EXPECT_EQ(errnoOf([&] { file.truncateFile(0); }), ENOENT);
    EXPECT_EQ(errnoOf([&] { file.seekToEndOfFile(); }), ENOENT);
    EXPECT_EQ(errnoOf([&] { file.synchronizeFile(); }), ENOENT);
    EXPECT_EQ(errnoOf([&] { file.closeFile(); }), ENOENT);
}

TEST_F(FileHandleOperations, NamesTheFileAndTheReason)
{
    FileHandle file = FileHandle::create(directory.path() / "missing" / "a.jpg");
    try {
        file.writeData(bytesOf("a"));
        FAIL() << "nothing was raised";
    } catch (const FileError& error) {
        EXPECT_THAT(error.what(), HasSubstr("Could not write to"));
        EXPECT_THAT(error.what(), HasSubstr("missing/a.jpg: No such file or directory"));
    }
}

TEST_F(FileHandleOperations, RaisesOnceClosed)
{
    FileHandle file = FileHandle::create(path);
    file.closeFile();
    EXPECT_EQ(errnoOf([&] { file.writeData(bytesOf("a")); }), EBADF);
}

TEST_F(FileHandleOperations, WritesBeyondFourGiB)
{
    FileHandle file = FileHandle::create(path);
    constexpr std::uint64_t fiveGiB = 5ULL << 30;
    file.truncateFile(fiveGiB);
    file.seekToEndOfFile();
    file.writeData(bytesOf("end"));
    EXPECT_EQ(std::filesystem::file_size(path), fiveGiB + 3);
}

}  // namespace
