#include "content/CopyRunFixture.h"
#include "content/FaultyFile.h"
#include "support/ProcessResources.h"

#include <cerrno>
#include <chrono>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

using Step = DiskFault::Step;

struct DiskCase {
    const char* name;
    DiskFault fault;
    const char* operation;  ///< what "Could not" names
    const char* reason;     ///< in plain words
    std::uint64_t left;     ///< bytes of the file that stay on the disk
    bool isCameraAsked = true;
};

constexpr std::uint64_t filmSize = 3'000'000;
constexpr std::uint64_t petabyte = std::uint64_t{1} << 50;

const DiskCase diskCases[] = {
    {"FullAtTheFirstByte", {Step::Write, ENOSPC}, "write to", "No space left on device", 0},
    // 5108 bytes are the first piece.
    {"FullBehindTheFirstPiece",
     {Step::Write, ENOSPC, 5108},
     "write to",
     "No space left on device",
     5108},
    {"FullInTheMiddle",
     {Step::Write, ENOSPC, 1'234'567},
     "write to",
     "No space left on device",
     1'234'567},
    {"FullAtTheLastByte",
     {Step::Write, ENOSPC, filmSize - 1},
     "write to",
     "No space left on device",
     filmSize - 1},
    {"FullWhenSynchronized",
     {Step::Synchronize, ENOSPC},
     "synchronize",
     "No space left on device",
     filmSize},
    {"FullWhenClosed", {Step::Close, ENOSPC}, "close", "No space left on device", filmSize},
    {"FullFolder", {Step::Create, ENOSPC}, "create", "No space left on device", 0, false},
    {"BrokenAtTheFirstByte", {Step::Write, EIO}, "write to", "Input/output error", 0},
    {"BrokenInTheMiddle",
     {Step::Write, EIO, 1'000'000},
     "write to",
     "Input/output error",
     1'000'000},
    {"BrokenWhenSynchronized",
     {Step::Synchronize, EIO},
     "synchronize",
     "Input/output error",
     filmSize},
    {"BrokenWhenClosed", {Step::Close, EIO}, "close", "Input/output error", filmSize},
    {"ReadOnlyWhenCreated", {Step::Create, EROFS}, "create", "Read-only file system", 0, false},
    // A file system that has shut itself down takes bytes that it will never write.
    {"ReadOnlyWhenSynchronized",
     {Step::Synchronize, EROFS},
     "synchronize",
     "Read-only file system",
     filmSize},
    {"ReadOnlyInTheMiddle",
     {Step::Write, EROFS, 2'000'000},
     "write to",
     "Read-only file system",
     2'000'000},
    {"QuotaWhenCreated", {Step::Create, EDQUOT}, "create", "Disk quota exceeded", 0, false},
    {"QuotaInTheMiddle", {Step::Write, EDQUOT, 65'536}, "write to", "Disk quota exceeded", 65'536},
    {"QuotaWhenClosed", {Step::Close, EDQUOT}, "close", "Disk quota exceeded", filmSize},
    {"TooLargeInTheMiddle",
     {Step::Write, EFBIG, 2'500'000},
     "write to",
     "File too large",
     2'500'000},
    {"FolderGoneWhenCreated",
     {Step::Create, ENOENT},
     "create",
     "No such file or directory",
     0,
     false},
    {"FolderStaleWhenCreated", {Step::Create, ESTALE}, "create", "Stale file handle", 0, false},
    {"StaleInTheMiddle", {Step::Write, ESTALE, 100'000}, "write to", "Stale file handle", 100'000},
    {"NotAllowed", {Step::Create, EACCES}, "create", "Permission denied", 0, false},
    {"TooManyOpenFiles", {Step::Create, EMFILE}, "create", "Too many open files", 0, false},
    {"NameTooLong", {Step::Create, ENAMETOOLONG}, "create", "File name too long", 0, false},
    {"PulledInTheMiddle", {Step::Write, ENODEV, 700'000}, "write to", "No such device", 700'000},
};

class CopyDisk : public CopyRunFixture {
protected:
    void TearDown() override
    {
        // Whatever has failed on the way. The engine keeps its receive thread.
        EXPECT_TRUE((ProcessResources{held_.descriptors, held_.threads + 1}.areAllThatIsHeld()))
            << held_ << " before, " << ProcessResources::now() << " after";
    }

    CopyResult copyWith(std::map<std::string, DiskFault> faults)
    {
        return copyAll(createWithFaults(std::move(faults)));
    }

    std::uint64_t requests() const { return camera->record().requestsOf(OperationCode::GetObject); }

    /// The messages of the engine and of the run, without their events.
    std::vector<std::string> messages() const
    {
        std::vector<std::string> all;
        for (const LogRecord& record : log.records())
            all.push_back(record.message);
        return all;
    }

    std::string at(const char* name) const { return (folder() / name).string(); }

private:
    static ProcessResources heldBefore()
    {
        // A sanitizer has a thread of its own from the first one on.
        std::thread([] {}).join();
        return ProcessResources::now();
    }

    // The log's file is open from the engine's first record on.
    const ProcessResources held_ = heldBefore();
};

class CopyDiskFault : public CopyDisk, public ::testing::WithParamInterface<DiskCase> { };

TEST_P(CopyDiskFault, FailsItsFileAndNoOther)
{
    const DiskCase& disk = GetParam();
    std::vector<std::uint32_t> made;
    for (const char16_t* name : {u"A.MOV", u"B.MOV", u"C.MOV"})
        made.push_back(card->addFile(name, filmSize));
    connect();
    const CopyResult result = copyWith({{"B.MOV", disk.fault}});
    const std::string reason =
        std::string("Could not ") + disk.operation + " " + at("B.MOV") + ": " + disk.reason;

    ASSERT_EQ(result.files.size(), 3U);
    EXPECT_TRUE(result.files[0].isCopied);
    EXPECT_FALSE(result.files[1].isCopied);
    EXPECT_EQ(result.files[1].failure, reason);
    EXPECT_EQ(result.files[1].path, fs::path(at("B.MOV")));
    EXPECT_TRUE(result.files[2].isCopied) << result.files[2].failure;
    // A failure before a success is not the run's.
    EXPECT_FALSE(result.isError);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = success)");

    EXPECT_TRUE(holdsObject(folder() / "A.MOV", made[0], filmSize));
    EXPECT_TRUE(holdsObject(folder() / "C.MOV", made[2], filmSize));
    EXPECT_EQ(requests(), disk.isCameraAsked ? 3U : 2U);
    EXPECT_EQ(fs::exists(folder() / "B.MOV"), disk.isCameraAsked);
    // What was written stays.
    if (disk.isCameraAsked) {
        EXPECT_TRUE(holdsObject(folder() / "B.MOV", made[1], disk.left));
    }
    if (disk.fault.step == Step::Write) {
        EXPECT_THAT(messages(), Contains("ReceiveCallback (error = " + reason + ")"));
        EXPECT_THAT(messages(), Contains(HasSubstr("getObject (result = fail")));
    }
}

TEST_P(CopyDiskFault, IsTheRunsWhenItIsTheLastFiles)
{
    card->addFile(u"A.MOV", filmSize);
    card->addFile(u"B.MOV", filmSize);
    connect();
    const CopyResult result = copyWith({{"B.MOV", GetParam().fault}});
    EXPECT_EQ(result.copiedCount(), 1U);
    EXPECT_TRUE(result.isError);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = fail)");
}

INSTANTIATE_TEST_SUITE_P(Disk, CopyDiskFault, ::testing::ValuesIn(diskCases),
                         [](const auto& row) { return std::string(row.param.name); });

// --- Room ---------------------------------------------------------------------------------------

TEST_F(CopyDisk, WhatFindsNoRoomOnAFullDiskIsNotAskedFor)
{
    card->addFile(u"A.MOV", filmSize);
    card->addFile(u"B.MOV", petabyte);
    card->addFile(u"C.MOV", petabyte);
    card->addFile(u"D.JPG", 10);
    connect();
    const CopyResult result = copyWith({{"A.MOV", {Step::Write, ENOSPC, 1'000'000}}});
    ASSERT_EQ(result.files.size(), 4U);
    const std::string refusal =
        "Could not copy to " + folder().string() + ": " + "No space left on device";
    EXPECT_EQ(result.files[1].failure, refusal);
    EXPECT_EQ(result.files[2].failure, refusal);
    EXPECT_TRUE(result.files[1].path.empty());
    // The small one still fits.
    EXPECT_TRUE(result.files[3].isCopied) << result.files[3].failure;
    EXPECT_EQ(requests(), 2U);
    EXPECT_EQ(filesInFolder(), 2U);
    EXPECT_THAT(observer.finished, ElementsAre("A.MOV", "B.MOV", "C.MOV", "D.JPG"));
    EXPECT_EQ(observer.received, 4U);
    // Once, though two files were refused.
    EXPECT_THAT(log.messagesOf(copyEvent),
                ElementsAre("startCopyingItems (copyItemCount = 4)",
                            "startCopyingItems (not asked for, error = " + refusal + ")",
                            "startCopyingItem (result = success)"));
}

TEST_F(CopyDisk, AQuotaThatIsUsedUpIsFoundBeforeTheTransfer)
{
    for (const char16_t* name : {u"A.MOV", u"B.MOV", u"C.MOV"})
        card->addFile(name, filmSize);
    connect();
    const CopyResult result = copyWith({{"A.MOV", {Step::Write, EDQUOT, 1'000'000}},
                                        {"B.MOV", {Step::Reserve, EDQUOT}},
                                        {"C.MOV", {Step::Reserve, EDQUOT}}});
    EXPECT_EQ(result.copiedCount(), 0U);
    for (const char* name : {"B.MOV", "C.MOV"})
        EXPECT_EQ(fs::file_size(folder() / name), 0U);
    EXPECT_EQ(result.files.at(1).failure,
              "Could not make room for " + at("B.MOV") + ": Disk quota exceeded");
    EXPECT_EQ(result.files.at(2).failure,
              "Could not make room for " + at("C.MOV") + ": Disk quota exceeded");
    EXPECT_EQ(requests(), 1U);
    EXPECT_TRUE(result.isError);
}

TEST_F(CopyDisk, AFileBeyondFourGibibytesIsHeldAgainstTheDiskFirst)
{
    // As a FAT disk does.
    card->addFile(u"A.MOV", 0x1'0000'0000);
    const std::uint32_t small = card->addFile(u"B.MOV", filmSize);
    connect();
    const CopyResult result =
        copyWith({{"A.MOV", {Step::Reserve, EFBIG}}, {"B.MOV", {Step::Reserve, EFBIG}}});
    EXPECT_EQ(result.files.at(0).failure,
              "Could not make room for " + at("A.MOV") + ": File too large");
    // Too large is that file, not the disk too full; and the small one is not looked at.
    EXPECT_TRUE(result.files.at(1).isCopied);
    EXPECT_TRUE(holdsObject(folder() / "B.MOV", small, filmSize));
    EXPECT_EQ(requests(), 1U);
}

TEST_F(CopyDisk, ADiskThatCannotReserveIsWrittenTo)
{
    card->addFile(u"A.MOV", filmSize);
    const std::uint32_t second = card->addFile(u"B.MOV", filmSize);
    connect();
    const CopyResult result =
        copyWith({{"A.MOV", {Step::Write, ENOSPC, 10}}, {"B.MOV", {Step::Reserve, EOPNOTSUPP}}});
    EXPECT_TRUE(result.files.at(1).isCopied);
    EXPECT_TRUE(holdsObject(folder() / "B.MOV", second, filmSize));
}

// --- The folder ---------------------------------------------------------------------------------

class CopyFolder : public CopyDisk {
protected:
    /// Three files; while the second is under way and the first is safe, `happening` takes place.
    CopyResult copyWhile(const std::function<void()>& happening)
    {
        for (const char16_t* name : {u"A.MOV", u"B.MOV", u"C.MOV"})
            handles.push_back(card->addFile(name, filmSize));
        connect();
        fs::create_directory(target);
        observer.stopWhen = [this, &happening] {
            // Slow enough to be seen in the middle of the second.
            if (observer.received == 1)
                camera->setPace({.megabytesPerSecond = hasHappened ? 0 : 0.5});
            if (!hasHappened && !observer.finished.empty() && fs::exists(target / "B.MOV")) {
                hasHappened = true;
                happening();
            }
            return false;
        };
        const ContentListing listing = load({.thumbnails = false}).listing;
        CopyRun run(engine, log.logger(), listing.handles, observer);
        return run.startCopyingItems(listing.objects, target, progress);
    }

    /// The last two files failed because the folder is no longer where it was.
    void expectMoved(const CopyResult& result)
    {
        ASSERT_TRUE(hasHappened);
        ASSERT_EQ(result.files.size(), 3U);
        const std::string moved =
            "the folder " + target.string() + " was moved, replaced or removed meanwhile";
        EXPECT_TRUE(result.files[0].isCopied);
        EXPECT_FALSE(result.files[1].isCopied);
        EXPECT_EQ(result.files[2].failure, moved);
        EXPECT_TRUE(result.isError);
        EXPECT_EQ(requests(), 2U);
        EXPECT_THAT(log.messagesOf(copyEvent),
                    Contains("startCopyingItems (not asked for, error = " + moved + ")"));
    }

    fs::path target = folder() / "target";
    fs::path elsewhere = folder() / "elsewhere";
    bool hasHappened = false;
};

TEST_F(CopyFolder, OneThatIsRemovedFailsTheFileUnderWayAndTheRest)
{
    const CopyResult result = copyWhile([this] { fs::remove_all(target); });
    expectMoved(result);
    EXPECT_EQ(result.files.at(1).failure,
              "Could not look at " + (target / "B.MOV").string() + ": No such file or directory");
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(CopyFolder, OneThatIsMadeAnewGetsNothing)
{
    expectMoved(copyWhile([this] {
        fs::remove_all(target);
        fs::create_directory(target);
    }));
    EXPECT_TRUE(fs::is_empty(target));
}

TEST_F(CopyFolder, OneThatBecomesALinkLeadsNowhereElse)
{
    fs::create_directory(elsewhere);
    writeText(elsewhere / "canary", "alive");
    const CopyResult result = copyWhile([this] {
        fs::rename(target, folder() / "aside");
        fs::create_directory_symlink(elsewhere, target);
    });
    expectMoved(result);
    // The file under way is whole where the folder is now, but not where it is said to be.
    EXPECT_THAT(result.files.at(1).failure, HasSubstr("was moved, replaced or removed"));
    EXPECT_TRUE(holdsObject(folder() / "aside" / "B.MOV", handles[1], filmSize));
    EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere), fs::directory_iterator()), 1);
}

TEST_F(CopyFolder, OneThatIsALinkFromTheBeginningIsTheUsersChoice)
{
    fs::create_directory(elsewhere);
    fs::create_directory_symlink(elsewhere, target);
    const CopyResult result = copyWhile([] {});
    EXPECT_EQ(result.copiedCount(), 3U);
    EXPECT_TRUE(holdsObject(elsewhere / "C.MOV", handles[2], filmSize));
}

TEST_F(CopyFolder, AFileReplacedByALinkIsNotTakenForTheCopy)
{
    // As large as the copy, so that its size gives nothing away.
    writeText(folder() / "other", std::string(filmSize, 'x'));
    const CopyResult result = copyWhile([this] {
        fs::remove(target / "B.MOV");
        fs::create_symlink(folder() / "other", target / "B.MOV");
    });
    EXPECT_FALSE(result.files.at(1).isCopied);
    EXPECT_THAT(result.files.at(1).failure, HasSubstr("Could not look at"));
    EXPECT_TRUE(result.files.at(2).isCopied);
}

// --- Slowness -----------------------------------------------------------------------------------

TEST_F(CopyDisk, ASlowDiskLosesNeitherTheCameraNorTheCaller)
{
    const std::uint32_t film = card->addFile(u"A.MOV", 200'000);
    connect();
    // Some forty pieces.
    const CopyResult result = copyWith({{"A.MOV", {.perWrite = 20ms}}});
    EXPECT_EQ(result.copiedCount(), 1U);
    EXPECT_TRUE(holdsObject(folder() / "A.MOV", film, 200'000));
    EXPECT_GE(observer.turns, 5);
}

TEST_F(CopyDisk, AStopWorksOnASlowDisk)
{
    for (const char16_t* name : {u"A.MOV", u"B.MOV"})
        card->addFile(name, filmSize);
    connect({.pace = {.megabytesPerSecond = 2}});
    observer.stopWhen = [this] { return progress->copiedSize() > 20'000; };
    // Six hundred pieces: twelve seconds if the stop did not work.
    const CopyResult result = copyWith({{"A.MOV", {.perWrite = 20ms}}});
    EXPECT_TRUE(result.isStopped);
    EXPECT_TRUE(result.isStopConfirmed);
    EXPECT_EQ(result.filesNotBegun, 1U);
    const ByteBuffer part = bytesOf(folder() / "A.MOV");
    EXPECT_LT(part.size(), filmSize);

    // The camera is as good as before.
    observer.stopWhen = {};
    camera->setPace({});
    EXPECT_EQ(copyAll().copiedCount(), 2U);
}

}  // namespace
