#include "content/CopyComparison.h"

#include "content/CopyRunFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class CopyComparisonTest : public CopyRunFixture {
protected:
    using Outcome = CopyComparisonResult::Outcome;

    /// Copies everything; the copies may then be changed before they are compared.
    void copy()
    {
        listing = load({.thumbnails = false}).listing;
        CopyRun run(engine, log.logger(), listing.handles, observer);
        result = run.startCopyingItems(listing.objects, folder(), progress);
        ASSERT_EQ(result.failedCount(), 0U);
        observer.finished.clear();
    }

    std::size_t compare()
    {
        CopyComparison comparison(engine, log.logger(), listing.handles, observer);
        found = comparison.compareCopies(result, progress);
        return found.count(Outcome::Same);
    }

    std::vector<std::string> comparisonRecords()
    {
        return log.messagesOf("CopyComparison compareCopies:progress:");
    }

    ContentListing listing;
    CopyResult result;
    CopyComparisonResult found;
};

TEST_F(CopyComparisonTest, CopiesThatAreTheSameStayCopied)
{
    // One byte; around one of the engine's small reads; many of them.
    for (const std::uint64_t size : {1UL, 5107UL, 5108UL, 5109UL, 6'000'000UL})
        card->addFile(u"A.MOV", size);
    connect();
    copy();
    EXPECT_EQ(compare(), 5U);
    EXPECT_EQ(result.copiedCount(), 5U);
    EXPECT_EQ(observer.finished.size(), 5U);
    EXPECT_THAT(comparisonRecords(), ElementsAre("compareCopies (result = success, same = 5 / 5)"));
    // As while copying, the headers count.
    EXPECT_EQ(progress->totalSize(), 6'015'325U);
    EXPECT_EQ(progress->copiedSize(), 6'015'325U + 5 * 12);
}

TEST_F(CopyComparisonTest, TheFirstByteThatDiffersIsTold)
{
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.MOV", 6'000'000);
    card->addFile(u"C.JPG", 1000);
    connect();
    copy();
    {
        std::fstream file(folder() / "B.MOV", std::ios::in | std::ios::out | std::ios::binary);
        file.seekg(5'000'123);
        const char flipped = static_cast<char>(file.get() ^ 1);
        file.seekp(5'000'123);
        file.put(flipped);
    }
    EXPECT_EQ(compare(), 2U);
    EXPECT_TRUE(result.files[0].isCopied);
    EXPECT_FALSE(result.files[1].isCopied);
    EXPECT_EQ(result.files[1].failure,
              "the copy differs from the camera's file, from byte 5000123 on");
    EXPECT_TRUE(result.files[2].isCopied);
    EXPECT_THAT(found.outcomes, ElementsAre(Outcome::Same, Outcome::Different, Outcome::Same));
    EXPECT_THAT(comparisonRecords(), ElementsAre("compareCopies (result = fail, same = 2 / 3)"));
    EXPECT_TRUE(std::filesystem::exists(folder() / "B.MOV"));
}

TEST_F(CopyComparisonTest, ACopyThatHasLostItsEndDiffers)
{
    card->addFile(u"A.JPG", 1000);
    connect();
    copy();
    std::filesystem::resize_file(folder() / "A.JPG", 999);
    EXPECT_EQ(compare(), 0U);
    EXPECT_THAT(result.files[0].failure, HasSubstr("from byte 999 on"));
}

TEST_F(CopyComparisonTest, ACopyThatGoesOnDiffers)
{
    card->addFile(u"A.JPG", 1000);
    connect();
    copy();
    std::ofstream(folder() / "A.JPG", std::ios::app) << 'x';
    EXPECT_EQ(compare(), 0U);
    EXPECT_THAT(result.files[0].failure, HasSubstr("from byte 1000 on"));
}

TEST_F(CopyComparisonTest, ACameraThatSendsLessTheSecondTimeDiffers)
{
    const std::uint32_t handle = card->addFile(u"A.JPG", 1000);
    ByteBuffer half(500);
    PatternContent(handle).fill(0, half);
    connectWith(FaultPlan().on(OperationCode::GetObject, answerWith(half), Occurrences::nth(2)));
    copy();
    EXPECT_EQ(compare(), 0U);
    EXPECT_THAT(result.files[0].failure, HasSubstr("from byte 500 on"));
}

TEST_F(CopyComparisonTest, ACopyThatIsGoneIsNamed)
{
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.JPG", 1000);
    connect();
    copy();
    std::filesystem::remove(folder() / "A.JPG");
    EXPECT_EQ(compare(), 1U);
    EXPECT_THAT(result.files[0].failure,
                HasSubstr("Could not read " + (folder() / "A.JPG").string()
                          + ": No such file or directory"));
    EXPECT_TRUE(result.files[1].isCopied);
}

TEST_F(CopyComparisonTest, ACameraThatIsGoneFailsEveryFile)
{
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.JPG", 1000);
    connect();
    copy();
    host->detach(camera);
    EXPECT_EQ(compare(), 0U);
    EXPECT_THAT(result.files[0].failure, HasSubstr("could not be compared: "));
    EXPECT_EQ(result.files[1].failure, "could not be compared: the camera is gone");
    EXPECT_THAT(found.outcomes, ElementsAre(Outcome::NotCompared, Outcome::NotCompared));
}

TEST_F(CopyComparisonTest, WhatFailedBeforeIsNotAskedForAgain)
{
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.JPG", 1000);
    connect();
    copy();
    result.files[0].isCopied = false;
    result.files[0].failure = "torn";
    EXPECT_EQ(compare(), 1U);
    EXPECT_EQ(result.files[0].failure, "torn");
    EXPECT_THAT(observer.finished, ElementsAre("B.JPG"));
}

TEST_F(CopyComparisonTest, AStopIsConfirmedByTheCameraAndLeavesTheCopies)
{
    for (const char16_t* name : {u"1.MOV", u"2.MOV", u"3.MOV"})
        card->addFile(name, fileSize);
    connect();
    copy();
    camera->setPace({.megabytesPerSecond = 2});
    observer.stopWhen = [this] {
        return progress->numberOfCopiedItems() == 2
            && progress->copiedSize() > fileSize + fileSize / 4;
    };
    EXPECT_EQ(compare(), 1U);
    EXPECT_TRUE(result.isStopped);
    EXPECT_TRUE(result.isCancelSent);
    EXPECT_TRUE(result.isStopConfirmed);
    EXPECT_EQ(result.copiedCount(), 3U);
    EXPECT_THAT(found.outcomes,
                ElementsAre(Outcome::Same, Outcome::NotCompared, Outcome::NotCompared));
    EXPECT_THAT(observer.finished, ElementsAre("1.MOV"));
    EXPECT_THAT(comparisonRecords(), ElementsAre("compareCopies (result = fail, same = 1 / 3)"));

    // The next transaction is not taken for a stopped one.
    observer.stopWhen = {};
    camera->setPace({});
    result.isStopped = result.isStopConfirmed = false;
    EXPECT_EQ(compare(), 3U);
}

}  // namespace
