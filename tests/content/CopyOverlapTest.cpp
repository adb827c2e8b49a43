// What is on its way to the disk while the next file is fetched.
#include "content/CopyRunFixture.h"
#include "content/DestinationFolder.h"
#include "content/DiskQueue.h"
#include "content/FaultyFile.h"
#include "ptp/FileHandle.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
namespace fs = std::filesystem;

namespace {

/// A file whose way to the disk a test decides on; the answer is an errno.
class AwaitedFile : public FileHandle {
public:
    AwaitedFile(const fs::path& path, std::function<int()> synchronize)
        : FileHandle(create(path))
        , synchronize_(std::move(synchronize))
    {
    }

protected:
    int synchronizeOnce() override
    {
        errno = synchronize_ ? synchronize_() : 0;
        return errno == 0 ? FileHandle::synchronizeOnce() : -1;
    }

private:
    const std::function<int()> synchronize_;
};

class CopyOverlap : public CopyRunFixture {
protected:
    void SetUp() override
    {
        for (const char16_t* name : {u"A", u"B", u"C", u"D", u"E", u"F", u"G", u"H"})
            card->addFile(name, 1000);
        connect();
    }

    /// A is synchronised so, the others as usual.
    CopyResult copyWhileAIsSynchronized(std::function<int()> synchronize)
    {
        return copyAll([synchronize = std::move(synchronize)](const fs::path& path) {
            return std::make_shared<AwaitedFile>(
                path, path.filename() == "A" ? synchronize : std::function<int()>());
        });
    }

    std::uint64_t requests() const { return camera->record().requestsOf(OperationCode::GetObject); }

    /// False when that does not come within seconds.
    static bool comes(const std::function<bool()>& isThere)
    {
        for (int i = 0; i < 2000 && !isThere(); ++i)
            std::this_thread::sleep_for(5ms);
        return isThere();
    }

    std::size_t finishedBeforeB = 0;
};

TEST_F(CopyOverlap, TheNextFileIsFetchedMeanwhile)
{
    std::atomic<bool> hasCome = false;
    const CopyResult result = copyWhileAIsSynchronized([&] {
        hasCome = comes([this] { return requests() >= 2; });
        return 0;
    });
    EXPECT_TRUE(hasCome);
    EXPECT_EQ(result.copiedCount(), 8U);
    EXPECT_EQ(bytesOf(folder() / "H").size(), 1000U);
}

TEST_F(CopyOverlap, NoMoreThanFourFilesAreWaitedForAtOnce)
{
    std::atomic<std::uint64_t> most = 0;
    const CopyResult result = copyWhileAIsSynchronized([&] {
        comes([this] { return requests() > DiskQueue::mostFiles; });
        // If more were to come, they would now.
        std::this_thread::sleep_for(100ms);
        most = requests();
        return 0;
    });
    EXPECT_EQ(most, DiskQueue::mostFiles + 1);
    EXPECT_EQ(result.copiedCount(), 8U);
}

TEST_F(CopyOverlap, ResultsComeInTheOrderOfTheFiles)
{
    copyWhileAIsSynchronized([&] {
        comes([this] { return requests() >= 4; });
        return 0;
    });
    EXPECT_THAT(observer.finished, ElementsAre("A", "B", "C", "D", "E", "F", "G", "H"));
    EXPECT_THAT(observer.numbers, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST_F(CopyOverlap, AFileThatTheDiskRefusesLateFailsAlone)
{
    const CopyResult result = copyWhileAIsSynchronized([&] {
        comes([this] { return requests() >= 3; });
        return EIO;
    });
    EXPECT_EQ(result.copiedCount(), 7U);
    EXPECT_FALSE(result.files.at(0).isCopied);
    EXPECT_EQ(result.files.at(0).failure,
              "Could not synchronize " + (folder() / "A").string() + ": Input/output error");
    // The last file's result is the run's.
    EXPECT_FALSE(result.isError);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = success)");
}

TEST_F(CopyOverlap, NothingIsFetchedBehindAFileThatFailed)
{
    const auto createWithFault = createWithFaults({{"A", {DiskFault::Step::Write, EIO}}});
    copyAll([&](const fs::path& path) {
        if (path.filename() == "B")
            finishedBeforeB = observer.finished.size();
        return createWithFault(path);
    });
    EXPECT_EQ(finishedBeforeB, 1U);
}

TEST_F(CopyOverlap, AFileThatIsSafeIsReportedWhileTheNextIsUnderWay)
{
    camera->setPace({.megabytesPerSecond = 1});
    card->addFile(u"I", 2'000'000);
    std::size_t seen = 0;
    observer.stopWhen = [&] {
        if (progress->numberOfCopiedItems() == 9)
            seen = std::max(seen, observer.finished.size());
        return false;
    };
    EXPECT_EQ(copyAll().copiedCount(), 9U);
    EXPECT_EQ(seen, 8U);
}

TEST_F(CopyOverlap, AStopWaitsForWhatIsOnItsWay)
{
    observer.stopWhen = [this] { return observer.received >= 2; };
    const CopyResult result = copyWhileAIsSynchronized([&] {
        std::this_thread::sleep_for(100ms);
        return 0;
    });
    EXPECT_TRUE(result.isStopped);
    ASSERT_EQ(result.files.size(), 2U);
    EXPECT_EQ(result.copiedCount(), 2U);
    EXPECT_EQ(result.filesNotBegun, 6U);
}

TEST_F(CopyOverlap, AStopIsSeenWhileTheDiskIsWaitedFor)
{
    // One more than may be on their way to the disk: the next turns are those of the wait.
    const std::size_t received = DiskQueue::mostFiles + 1;
    std::atomic<int> questions = 0;
    observer.stopWhen = [&] {
        if (observer.received == received)
            ++questions;
        return false;
    };
    std::atomic<bool> isAsked = false;
    copyWhileAIsSynchronized([&] {
        isAsked = comes([&] { return questions >= 3; });
        return 0;
    });
    EXPECT_TRUE(isAsked);
}

TEST_F(CopyOverlap, AnErrorOfTheCallersLeavesNoThreadBehind)
{
    observer.stopWhen = []() -> bool { throw std::runtime_error("the caller's own"); };
    EXPECT_THROW(copyWhileAIsSynchronized({}), std::runtime_error);
    observer.stopWhen = {};
    EXPECT_EQ(copyAll().copiedCount(), 8U);
}

TEST_F(CopyOverlap, TheQueueNamesTheSizeThatIsMissing)
{
    const auto target = std::make_shared<DestinationFolder>(folder());
    DiskQueue queue(target);
    const auto file = [&](const char* name) {
        auto made = std::make_shared<FileHandle>(target->create(name));
        made->writeData(ByteBuffer(10));
        return made;
    };
    EXPECT_EQ(queue.add(file("whole"), 10).get(), "");
    EXPECT_EQ(queue.add(file("short"), 11).get(), "11 bytes were announced and 10 arrived");
}

TEST_F(CopyOverlap, DestroyingTheQueueWaitsForItsFiles)
{
    const auto target = std::make_shared<DestinationFolder>(folder());
    std::future<std::string> failure;
    {
        DiskQueue queue(target);
        failure = queue.add(std::make_shared<AwaitedFile>(folder() / "late",
                                                          [] {
                                                              std::this_thread::sleep_for(50ms);
                                                              return 0;
                                                          }),
                            0);
    }
    EXPECT_EQ(failure.wait_for(0s), std::future_status::ready);
    EXPECT_EQ(failure.get(), "");
}

}  // namespace
