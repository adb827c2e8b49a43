#include "ptp/GetObjectCallback.h"

#include "foundation/Errors.h"
#include "ptp/CopiedSizeProgress.h"
#include "ptp/FileHandle.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

using namespace nivor;
using namespace nivor::test;

namespace {

class Counter : public CopiedSizeProgress {
public:
    std::uint64_t copiedSize() const override { return size; }
    void setCopiedSize(std::uint64_t copiedSize) override { size = copiedSize; }
    std::uint64_t size = 0;
};

class GetObjectSink : public ::testing::Test {
protected:
    std::string contents() const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void fill(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }

    void openFile()
    {
        sink.setFileHandle(std::make_shared<FileHandle>(FileHandle::openForWriting(path)));
    }

    bool give(const std::string& piece)
    {
        received += piece.size();
        const ByteBuffer bytes(piece.begin(), piece.end());
        return sink.callbackProc(received, 0, bytes.data(), bytes.size());
    }

    TemporaryDirectory directory;
    std::filesystem::path path = directory.path() / "object";
    std::shared_ptr<Counter> counter = std::make_shared<Counter>();
    GetObjectCallback sink{counter, nullptr};
    std::uint64_t received = 0;
    const std::string header = std::string(12, 'h');
};

TEST_F(GetObjectSink, RefusesFirstPieceOfTwelveBytes)
{
    fill("untouched");
    openFile();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(give(header));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Oh!!! receiveBuffer is length 12 (< 12.)\n");
    EXPECT_EQ(contents(), "untouched");
    EXPECT_EQ(counter->size, 12U);
    EXPECT_FALSE(sink.isFirst());
}

TEST_F(GetObjectSink, WritesTheOneByteOfAFirstPieceOfThirteen)
{
    fill("older and longer");
    openFile();
    EXPECT_TRUE(give(header + "x"));
    EXPECT_EQ(contents(), "x");
    EXPECT_EQ(counter->size, 13U);
}

TEST_F(GetObjectSink, LeavesNothingOfALongerFile)
{
    fill(std::string(100'000, 'o'));
    openFile();
    EXPECT_TRUE(give(header + "new "));
    EXPECT_TRUE(give("bytes"));
    EXPECT_EQ(contents(), "new bytes");
}

TEST_F(GetObjectSink, WritesTwoPiecesOneBehindTheOther)
{
    fill("");
    openFile();
    EXPECT_TRUE(give(header + std::string(5108, 'a')));
    EXPECT_TRUE(give(std::string(1000, 'b')));
    EXPECT_EQ(contents(), std::string(5108, 'a') + std::string(1000, 'b'));
    EXPECT_EQ(counter->size, 6120U);
}

TEST_F(GetObjectSink, AddsToWhatTheRunHasCopiedBefore)
{
    counter->size = 1'000'000;
    EXPECT_TRUE(give(header + "abc"));
    EXPECT_EQ(counter->size, 1'000'015U);
}

TEST_F(GetObjectSink, GoesOnWithoutAFile)
{
    EXPECT_TRUE(give(header + "abc"));
    EXPECT_TRUE(give("def"));
    EXPECT_EQ(sink.lastRecvdDataSize(), 18U);
}

TEST_F(GetObjectSink, GoesOnWithoutAProgressObject)
{
    fill("");
    openFile();
    sink.setData(nullptr);
    EXPECT_TRUE(give(header + "abc"));
    EXPECT_EQ(contents(), "abc");
}

TEST_F(GetObjectSink, TakesTheHeaderOfASecondTransferForData)
{
    fill("");
    openFile();
    EXPECT_TRUE(give(header + "one"));
    EXPECT_TRUE(give(header + "two"));
    EXPECT_EQ(contents(), "one" + header + "two");
}

TEST_F(GetObjectSink, RaisesTheFileErrorOfADiskThatIsFull)
{
    sink.setFileHandle(std::make_shared<FileHandle>(FileHandle::openForWriting("/dev/full")));
    try {
        give(header + "abc");
        FAIL() << "nothing was raised";
    } catch (const FileError& error) {
        // A device can't be cut to length 0 either; whichever comes first is reported.
        EXPECT_THAT(error.code().value(), ::testing::AnyOf(ENOSPC, EINVAL));
    }
}

TEST_F(GetObjectSink, RaisesTheFileErrorOfAFileThatNeverOpened)
{
    sink.setFileHandle(
        std::make_shared<FileHandle>(FileHandle::create(directory.path() / "missing" / "file")));
    try {
        give(header + "abc");
        FAIL() << "nothing was raised";
    } catch (const FileError& error) {
        EXPECT_EQ(error.code().value(), ENOENT);
    }
}

}  // namespace
