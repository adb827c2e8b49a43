#include "content/BackgroundFixture.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Operation = OperationCode;

class BackgroundLoaderTest : public BackgroundFixture {
protected:
    void addFiles(std::initializer_list<const char16_t*> names)
    {
        for (const char16_t* name : names)
            card->addFile(name, 10);
    }

    /// Starts a load that stands still before the object after the first `objects`.
    void loadUpTo(int objects)
    {
        card->closeAfter(objects);
        loader.setupDataModels();
        mainQueue.advance(BackgroundLoader::startDelay);
        card->waitUntilReached();
    }

    void goOn(int objects)
    {
        card->closeAfter(objects);
        card->waitUntilReached();
    }

    void goOnToTheEnd()
    {
        card->open();
        loader.operationQueue().waitUntilAllOperationsAreFinished();
    }
};

TEST_F(BackgroundLoaderTest, BeginsOneSecondAfterItWasAskedTo)
{
    addFiles({u"A"});
    plugIn(card);
    loader.setupDataModels();
    mainQueue.advance(999ms);
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(engine.connected());
    EXPECT_FALSE(loader.isLoading());
    mainQueue.advance(1ms);
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(engine.connected());
}

TEST_F(BackgroundLoaderTest, TheWholeListComesTwoSecondsAfterTheLastObject)
{
    addFiles({u"A", u"B"});
    plugIn(card);
    load();
    EXPECT_THAT(shown(), ElementsAre("A"));
    model.setIsUpdateView(false);
    mainQueue.advance(1999ms);
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_FALSE(model.isUpdateView());
    mainQueue.advance(1ms);
    EXPECT_THAT(shown(), ElementsAre("A", "B"));
    EXPECT_TRUE(model.isUpdateView());
    EXPECT_EQ(model.handlesDict()->size(), 2);
}

TEST_F(BackgroundLoaderTest, ASnapshotIsPublishedOnceTheLastOneHasBeenTaken)
{
    addFiles({u"A", u"B", u"C", u"D", u"E"});
    plugIn(card);
    loadUpTo(2);
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_TRUE(model.isUpdateView());
    // Every handle is known from the beginning.
    EXPECT_EQ(model.handlesDict()->size(), 5);

    const auto taken = model.dataModels();
    model.setIsUpdateView(false);
    goOn(2);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C"));
    EXPECT_TRUE(model.isUpdateView());
    // What has been handed out is nobody else's to change.
    EXPECT_THAT(namesOf(*taken), ElementsAre("A"));
    goOnToTheEnd();
}

TEST_F(BackgroundLoaderTest, SnapshotsAndTheListAreSorted)
{
    addFiles({u"B", u"C", u"A"});
    plugIn(card);
    loader.setSortDescriptors({{SortKey::FileName, true}});
    loadUpTo(1);
    EXPECT_THAT(shown(), ElementsAre("B"));
    model.setIsUpdateView(false);
    goOn(1);
    EXPECT_THAT(shown(), ElementsAre("B", "C"));
    loader.setSortDescriptors({{SortKey::FileName, false}});
    goOnToTheEnd();
    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("C", "B", "A"));
}

TEST_F(BackgroundLoaderTest, WithoutDescriptorsTheOrderIsThatOfTheHandles)
{
    addFiles({u"B", u"C", u"A"});
    plugIn(card);
    loadWhole();
    EXPECT_THAT(shown(), ElementsAre("B", "C", "A"));
}

TEST_F(BackgroundLoaderTest, WithoutACameraNothingChanges)
{
    loadWhole();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
    EXPECT_FALSE(loader.isLoading());
}

TEST_F(BackgroundLoaderTest, WithoutAStorageNothingIsPublished)
{
    addFiles({u"A"});
    plugIn(card, {.faults = FaultPlan().on(Operation::GetStorageIDs, answerWithArray({}))});
    loadWhole();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST_F(BackgroundLoaderTest, AnEmptyCardGivesAnEmptyList)
{
    plugIn(card);
    loadWhole();
    ASSERT_NE(model.dataModels(), nullptr);
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_TRUE(model.isUpdateView());
}

TEST_F(BackgroundLoaderTest, OneFailureIsPassedOver)
{
    addFiles({u"A", u"B", u"C"});
    plugIn(
        card,
        {.faults = FaultPlan().on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(2))});
    loadWhole();
    EXPECT_THAT(shown(), ElementsAre("A", "C"));
    EXPECT_TRUE(loader.isIncomplete());
}

TEST_F(BackgroundLoaderTest, TwoFailuresInARowPublishWhatWasRead)
{
    addFiles({u"A", u"B", u"C", u"D"});
    plugIn(card, {.faults = FaultPlan().on(Operation::GetObjectInfo, damagedAnswer(), {2, 3})});
    loadWhole();
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_TRUE(model.isUpdateView());
    EXPECT_TRUE(loader.isIncomplete());
    EXPECT_FALSE(loader.hasFailed());
    loader.setupDataModels();
    EXPECT_FALSE(loader.isIncomplete());
}

TEST_F(BackgroundLoaderTest, ACameraThatVanishesLeavesWhatWasRead)
{
    addFiles({u"A", u"B", u"C", u"D"});
    plugIn(
        card,
        {.faults = FaultPlan().on(Operation::GetObjectInfo, fault::Vanish{}, Occurrences::nth(3))});
    loadWhole();
    EXPECT_THAT(shown(), ElementsAre("A", "B"));
}

TEST_F(BackgroundLoaderTest, ClosingEndsTheLoadAfterItsObjectAndNothingIsPublished)
{
    addFiles({u"A", u"B", u"C", u"D"});
    const auto camera = plugIn(card);
    loadUpTo(1);
    EXPECT_TRUE(loader.isLoading());
    model.setIsUpdateView(false);
    loader.setIsClosed(true);
    goOnToTheEnd();
    mainQueue.advance(10s);
    EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 2U);
    EXPECT_THAT(shown(), ElementsAre("A"));
    EXPECT_FALSE(model.isUpdateView());
    EXPECT_FALSE(loader.isLoading());
}

TEST_F(BackgroundLoaderTest, ClosingBetweenTheLastObjectAndThePublicationKeepsItBack)
{
    addFiles({u"A", u"B"});
    plugIn(card);
    load();
    loader.setIsClosed(true);
    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("A"));
}

TEST_F(BackgroundLoaderTest, ALoadThatIsScheduledWhenTheProgramClosesNeverBegins)
{
    plugIn(card);
    loader.setupDataModels();
    loader.setIsClosed(true);
    mainQueue.advance(1s);
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(engine.connected());
}

TEST_F(BackgroundLoaderTest, WhatIsLeftInTheQueueOutlivesTheLoader)
{
    addFiles({u"A"});
    plugIn(card);
    {
        BackgroundLoader other(Parts{engine, model, priority, mainQueue, anyVendorID});
        other.setupDataModels();
        mainQueue.advance(1s);
        other.operationQueue().waitUntilAllOperationsAreFinished();
        other.setupDataModels();
    }
    model.setIsUpdateView(false);
    EXPECT_EQ(mainQueue.waiting(), 2U);
    mainQueue.advance(10s);
    EXPECT_FALSE(model.isUpdateView());
}

TEST_F(BackgroundLoaderTest, ALaterLoadEndsAnEarlierOne)
{
    addFiles({u"A", u"B", u"C"});
    const auto camera = plugIn(card);
    loadUpTo(1);
    loader.setupDataModels();
    mainQueue.advance(1s);
    goOnToTheEnd();
    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("A", "B", "C"));
    // Two of the first load, three of the second.
    EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 5U);
}

TEST_F(BackgroundLoaderTest, ThePublicationOfAnEarlierLoadCountsForNothing)
{
    addFiles({u"OLD"});
    const auto old = plugIn(card);
    load();
    host->detach(old);
    model.clear();
    model.setIsUpdateView(false);

    const auto otherCard = std::make_shared<MemoryCard>();
    otherCard->addFile(u"NEW", 1);
    plugIn(otherCard, {.faults = FaultPlan().on(Operation::GetStorageIDs, answerWithArray({}))});
    loader.setupDataModels();
    mainQueue.advance(1s);
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    mainQueue.advance(1s);  // by now the first load's list is due
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST_F(BackgroundLoaderTest, WhatAnEarlierLoadHasPublishedIsGoneWhenTheNextIsScheduled)
{
    addFiles({u"OLD"});
    plugIn(card);
    loadWhole();
    EXPECT_TRUE(model.isUpdateView());
    loader.setupDataModels();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST_F(BackgroundLoaderTest, AnOrderChosenBeforeThePublicationHolds)
{
    addFiles({u"A", u"C", u"B"});
    plugIn(card);
    loader.setSortDescriptors({{SortKey::FileName, true}});
    load();
    loader.setSortDescriptors({{SortKey::FileName, false}});
    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("C", "B", "A"));
}

TEST_F(BackgroundLoaderTest, AFailureIsKnownUntilTheNextLoadIsScheduled)
{
    load();
    EXPECT_TRUE(loader.hasFailed());
    loader.setupDataModels();
    EXPECT_FALSE(loader.hasFailed());
}

TEST_F(BackgroundLoaderTest, AListingWaitsWhileARunHasTheCamera)
{
    addFiles({u"A", u"B", u"C"});
    const auto camera = plugIn(card);
    loadUpTo(1);
    {
        const CameraPriority::Claim claim(priority);
        card->open();
        // The engine's lock comes free when the second object has been read, and stays so.
        const std::lock_guard guard(engine.lock());
        EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 2U);
        EXPECT_TRUE(loader.isLoading());
    }
    goOnToTheEnd();
    EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 3U);
}

TEST_F(BackgroundLoaderTest, ClosingWakesAListingThatWaits)
{
    addFiles({u"A", u"B"});
    plugIn(card);
    const CameraPriority::Claim claim(priority);
    loader.setupDataModels();
    mainQueue.advance(1s);
    loader.setIsClosed(true);
    loader.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(engine.connected());
}

TEST_F(BackgroundLoaderTest, TellsHowFarItIs)
{
    addFiles({u"A", u"B", u"C"});
    plugIn(card);
    loadUpTo(2);
    EXPECT_TRUE(loader.isLoading());
    EXPECT_EQ(loader.objectsDone(), 2U);
    EXPECT_EQ(loader.objectsTotal(), 3U);
    goOnToTheEnd();
    EXPECT_FALSE(loader.isLoading());
    EXPECT_EQ(loader.objectsDone(), 3U);
}

TEST_F(BackgroundLoaderTest, ADeletedFileDoesNotComeBackWithTheList)
{
    addFiles({u"A", u"B", u"C"});
    plugIn(card);
    loadUpTo(2);
    model.remove(model.dataModels()->front()->myHandle());
    EXPECT_THAT(shown(), IsEmpty());
    goOnToTheEnd();
    mainQueue.advance(2s);
    EXPECT_THAT(shown(), ElementsAre("B", "C"));
    EXPECT_EQ(model.handlesDict()->size(), 2);
}

}  // namespace
