#include "content/CopyRunFixture.h"
#include "ptp/FileHandle.h"

#include <fcntl.h>

#include <cerrno>
#include <chrono>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class CopyRunTest : public CopyRunFixture { };

/// A file on a disk without room.
class FullDiskFile : public FileHandle {
public:
    using FileHandle::FileHandle;

protected:
    ssize_t writeSome(ByteView /*bytes*/) override
    {
        errno = ENOSPC;
        return -1;
    }
};

std::shared_ptr<FileHandle> createOnFullDisk(const fs::path& path)
{
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return std::make_shared<FullDiskFile>(descriptor, path);
}

TEST_F(CopyRunTest, FilesArriveByteForByte)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    const std::uint32_t small = card->addFile(u"SMALL.JPG", 1, dcim);
    const std::uint32_t packet = card->addFile(u"PACKET.JPG", 512 - 12, dcim);
    const std::uint32_t large = card->addFile(u"LARGE.MOV", 20'000'000, dcim);
    connect();
    const CopyResult result = copyAll();
    EXPECT_EQ(result.copiedCount(), 3U);
    EXPECT_FALSE(result.isError);
    EXPECT_TRUE(holdsObject(folder() / "SMALL.JPG", small, 1));
    EXPECT_TRUE(holdsObject(folder() / "PACKET.JPG", packet, 500));
    EXPECT_TRUE(holdsObject(folder() / "LARGE.MOV", large, 20'000'000));
    EXPECT_EQ(filesInFolder(), 3U);

    EXPECT_EQ(observer.items, 3U);
    EXPECT_EQ(observer.total, 20'000'501U);
    EXPECT_THAT(observer.finished, ElementsAre("SMALL.JPG", "PACKET.JPG", "LARGE.MOV"));
    EXPECT_THAT(observer.numbers, ElementsAre(1U, 2U, 3U));
    EXPECT_EQ(progress->copiedSize(), 20'000'501U + 3 * 12);
    EXPECT_EQ(progress->destinationURL().toLocalFile().toStdString(), folder().string());
}

TEST_F(CopyRunTest, TheLogCountsTheGivenItemsAndKeepsItsWording)
{
    card->addFile(u"A.JPG", 10, card->addFolder(u"DCIM"));
    connect();
    copyAll();
    EXPECT_THAT(log.messagesOf(copyEvent),
                ElementsAre("startCopyingItems (copyItemCount = 2)",
                            "startCopyingItem (result = success)"));
}

TEST_F(CopyRunTest, EqualNamesAreNumberedInTheOrderOfTheRun)
{
    std::vector<std::uint32_t> sameName;
    for (const char16_t* name : {u"A", u"B", u"C"})
        sameName.push_back(card->addFile(u"IMG.JPG", 100, card->addFolder(name)));
    connect();
    copyAll();
    EXPECT_TRUE(holdsObject(folder() / "IMG.JPG", sameName.at(0), 100));
    EXPECT_TRUE(holdsObject(folder() / "IMG_1.JPG", sameName.at(1), 100));
    EXPECT_TRUE(holdsObject(folder() / "IMG_2.JPG", sameName.at(2), 100));
}

TEST_F(CopyRunTest, TakenNamesAreLeftAlone)
{
    writeText(folder() / "IMG.JPG", "mine");
    writeText(folder() / "IMG_1.JPG", "mine too");
    const std::uint32_t first = card->addFile(u"IMG.JPG", 100, card->addFolder(u"A"));
    const std::uint32_t second = card->addFile(u"IMG.JPG", 100, card->addFolder(u"B"));
    connect();
    copyAll();
    EXPECT_TRUE(holdsObject(folder() / "IMG_2.JPG", first, 100));
    EXPECT_TRUE(holdsObject(folder() / "IMG_3.JPG", second, 100));
    EXPECT_EQ(fs::file_size(folder() / "IMG.JPG"), 4U);
}

TEST_F(CopyRunTest, OnlyFoldersMeansNothingToDo)
{
    card->addFolder(u"DCIM");
    connect();
    const CopyResult result = copyAll();
    EXPECT_THAT(result.files, IsEmpty());
    EXPECT_EQ(observer.items, 0U);
    EXPECT_EQ(filesInFolder(), 0U);
    EXPECT_THAT(log.messagesOf(copyEvent),
                ElementsAre("startCopyingItems (copyItemCount = 1)",
                            "startCopyingItem (result = success)"));
}

TEST_F(CopyRunTest, AFailureBeforeASuccessShowsInTheFilesOnly)
{
    card->addFile(u"EMPTY.TXT", 0);
    card->addFile(u"A.JPG", 10);
    connect();
    const CopyResult result = copyAll();
    ASSERT_EQ(result.files.size(), 2U);
    EXPECT_FALSE(result.files.at(0).isCopied);
    EXPECT_THAT(result.files.at(0).failure, HasSubstr("0 bytes"));
    EXPECT_TRUE(fs::exists(folder() / "EMPTY.TXT"));
    EXPECT_TRUE(result.files.at(1).isCopied);
    EXPECT_FALSE(result.isError);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = success)");
}

TEST_F(CopyRunTest, AFailureOfTheLastFileIsTheRuns)
{
    card->addFile(u"A.JPG", 10);
    card->addFile(u"EMPTY.TXT", 0);
    connect();
    const CopyResult result = copyAll();
    EXPECT_TRUE(result.isError);
    EXPECT_EQ(result.failedCount(), 1U);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = fail)");
}

TEST_F(CopyRunTest, AFullDiskFailsTheFileAndIsNamed)
{
    card->addFile(u"A.MOV", 3'000'000);
    card->addFile(u"B.MOV", 3'000'000);
    connect();
    const CopyResult result = copyAll(&createOnFullDisk);
    ASSERT_EQ(result.files.size(), 2U);
    for (const CopiedFile& file : result.files) {
        EXPECT_FALSE(file.isCopied);
        EXPECT_THAT(file.failure, HasSubstr("No space left on device"));
        EXPECT_TRUE(fs::exists(file.path));
    }
    EXPECT_TRUE(result.isError);
}

TEST_F(CopyRunTest, AFileThatCannotBeCreatedIsNotAskedFor)
{
    card->addFile(u"A.JPG", 10);
    connect();
    fs::remove(folder());
    const CopyResult result = copyAll();
    ASSERT_EQ(result.files.size(), 1U);
    EXPECT_THAT(result.files.front().failure, HasSubstr("No such file or directory"));
    EXPECT_EQ(camera->record().requestsOf(OperationCode::GetObject), 0U);
    fs::create_directory(folder());
}

TEST_F(CopyRunTest, AnErrorThatOnlyTheClosingShowsFailsTheFile)
{
    card->addFile(u"A.JPG", 10);
    connect();
    // Takes the bytes elsewhere, so that nothing is where it should be afterwards.
    const CopyResult result = copyAll([](const fs::path& path) {
        const int descriptor = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        return std::make_shared<FileHandle>(descriptor, path);
    });
    EXPECT_FALSE(result.files.front().isCopied);
    EXPECT_THAT(result.files.front().failure, HasSubstr(folder().string()));
}

TEST_F(CopyRunTest, AWrongSizeIsAFailureThoughTheTransferSucceeded)
{
    card->addFile(u"A.JPG", 100);
    connectWith(
        FaultPlan().on(OperationCode::GetObjectInfo, fault::UntrueObjectInfo{.objectSize = 101}));
    const CopyResult result = copyAll();
    EXPECT_FALSE(result.files.front().isCopied);
    EXPECT_EQ(result.files.front().failure, "101 bytes were announced and 100 arrived");
    EXPECT_TRUE(result.isError);
}

TEST_F(CopyRunTest, AnObjectThatIsNotListedFails)
{
    card->addFile(u"A.JPG", 10);
    connect();
    const ContentListing listing = load().listing;
    CopyRun run(engine, log.logger(), {}, observer);
    const CopyResult result = run.startCopyingItems(listing.objects, folder(), progress);
    EXPECT_EQ(result.failedCount(), 1U);
    EXPECT_EQ(filesInFolder(), 0U);
    EXPECT_EQ(observer.received, 1U) << "it keeps nobody waiting";
}

TEST_F(CopyRunTest, TheCallerStaysResponsiveAndIsWokenAtOnce)
{
    card->addFile(u"A.MOV", 1'000'000);
    connect({.pace = {.megabytesPerSecond = 1}});
    copyAll();
    // A second in slices of 10 ms; a busy machine may make them longer.
    EXPECT_GE(observer.turns, 5);

    card->addFile(u"B.JPG", 10);
    camera->setPace({});
    const ContentListing listing = load().listing;
    CopyRun run(engine, log.logger(), listing.handles, observer);
    auto shortest = std::chrono::steady_clock::duration::max();
    for (int i = 0; i < 3; ++i) {
        const auto began = std::chrono::steady_clock::now();
        run.startCopyingItems({listing.objects.back()}, folder(), progress);
        shortest = std::min(shortest, std::chrono::steady_clock::now() - began);
    }
    EXPECT_LT(shortest, 300ms);
}

TEST_F(CopyRunTest, AHostileNameStaysInTheFolder)
{
    const std::uint32_t file = card->addFile(u"../../escaped\n.JPG", 100);
    connect();
    const CopyResult result = copyAll();
    EXPECT_TRUE(result.files.front().isCopied);
    EXPECT_TRUE(holdsObject(folder() / ".._.._escaped_.JPG", file, 100));
    EXPECT_THAT(observer.finished, ElementsAre("../../escaped\n.JPG"));
}

}  // namespace
