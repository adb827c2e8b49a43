#include "content/ObjectTree.h"
#include "content/SimulatedCameraFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

using End = ContentLoader::End;
using Operation = OperationCode;

class RootOnlyListing : public SimulatedCameraFixture {
protected:
    void connectRootOnly(FaultPlan faults = {})
    {
        connect({.faults = std::move(faults), .listing = ListingStyle::RootOnly});
    }

    std::uint64_t handleRequests() const
    {
        return camera->record().requestsOf(Operation::GetObjectHandles);
    }
};

TEST_F(RootOnlyListing, EachFolderIsAskedLevelByLevel)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    const std::uint32_t sub = card->addFolder(u"100NIVOR", dcim);
    const std::uint32_t deep = card->addFolder(u"DEEP", sub);
    card->addFolder(u"MISC");
    card->addFile(u"A.JPG", 1, dcim);
    card->addFile(u"B.JPG", 1, sub);
    card->addFile(u"C.JPG", 1, deep);
    card->addFile(u"TOP.TXT", 1);
    connectRootOnly();
    const auto result = load();
    EXPECT_EQ(result.end, End::Complete);
    EXPECT_THAT(
        namesOf(result.listing.objects),
        ElementsAre("DCIM", "MISC", "TOP.TXT", "100NIVOR", "A.JPG", "DEEP", "B.JPG", "C.JPG"));
    EXPECT_EQ(handleRequests(), 5U);
    EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 8U);
}

TEST_F(RootOnlyListing, ACameraThatListsEverythingSeesOneRequest)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    card->addFolder(u"EMPTY");
    card->addFile(u"A.JPG", 1, dcim);
    connect();
    EXPECT_EQ(load().listing.objects.size(), 3U);
    EXPECT_EQ(handleRequests(), 1U);
}

TEST_F(RootOnlyListing, WithoutFoldersThereIsNothingToAsk)
{
    card->addFile(u"A.JPG", 1);
    connectRootOnly();
    EXPECT_EQ(load().listing.objects.size(), 1U);
    EXPECT_EQ(handleRequests(), 1U);
}

TEST_F(RootOnlyListing, EmptyFoldersAreAskedOnce)
{
    card->addFolder(u"DCIM");
    connect();
    EXPECT_EQ(load().listing.objects.size(), 1U);
    EXPECT_EQ(handleRequests(), 2U);
}

TEST_F(RootOnlyListing, AnObjectNamedAgainIsReadOnce)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    const std::uint32_t misc = card->addFolder(u"MISC");
    const std::uint32_t file = card->addFile(u"A.JPG", 1, dcim);
    // Answers every request with everything, itself included.
    connectRootOnly(FaultPlan().on(Operation::GetObjectHandles, answerWithArray({dcim, misc, file}),
                                   Occurrences::from(2)));
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("DCIM", "MISC", "A.JPG"));
    EXPECT_EQ(camera->record().requestsOf(Operation::GetObjectInfo), 3U);
    EXPECT_EQ(result.listing.objects.back()->parentObject(), QString::number(dcim));
}

TEST_F(RootOnlyListing, AnObjectThatNamesNoKnownParentLiesWhereItWasFound)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    const std::uint32_t atTop = card->add({.parent = noHandle, .name = u"SAYS_TOP"}, ByteBuffer{1});
    const std::uint32_t lost = card->add({.parent = 4711, .name = u"SAYS_LOST"}, ByteBuffer{1});
    const std::uint32_t own =
        card->add({.handle = 99, .parent = 99, .name = u"SAYS_ITSELF"}, ByteBuffer{1});
    connectWith(FaultPlan()
                    .on(Operation::GetObjectHandles, answerWithArray({dcim}), Occurrences::nth(1))
                    .on(Operation::GetObjectHandles, answerWithArray({atTop, lost, own}),
                        Occurrences::nth(2)));
    const auto result = load();
    const ObjectTree tree(result.listing.objects);
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < tree.nodes().size(); ++i)
        paths.push_back(tree.path(i).toStdString());
    EXPECT_THAT(paths, ElementsAre("DCIM", "DCIM/SAYS_TOP", "DCIM/SAYS_LOST", "DCIM/SAYS_ITSELF"));
}

TEST_F(RootOnlyListing, AnObjectFoundAboveItsFolderKeepsTheFolderThatItNames)
{
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    const std::uint32_t sub = card->addFolder(u"SUB", dcim);
    const std::uint32_t file = card->addFile(u"A.JPG", 1, sub);
    // Everything below the folder at once.
    connectRootOnly(FaultPlan().on(Operation::GetObjectHandles, answerWithArray({sub, file}),
                                   Occurrences::nth(2)));
    EXPECT_EQ(load().listing.objects.at(2)->parentObject(), QString::number(sub));
}

TEST_F(RootOnlyListing, ObjectsAtTheTopMayNameAParentThatIsNowhere)
{
    card->add({.handle = 2, .parent = 1, .name = u"A.JPG"}, ByteBuffer{1});
    connect();
    EXPECT_EQ(load().listing.objects.front()->parentObject(), QStringLiteral("0"));
    card->add({.handle = 3, .parent = 1, .name = u"DCIM", .format = ObjectFormatCode::Association},
              ByteBuffer{});
    card->add({.handle = 4, .parent = 3, .name = u"B.JPG"}, ByteBuffer{1});
    // With an object inside a listed folder this is the whole storage, and stays as it is told.
    EXPECT_EQ(load().listing.objects.front()->parentObject(), QStringLiteral("1"));
}

TEST_F(RootOnlyListing, TheDepthHasABound)
{
    std::uint32_t folder = card->addFolder(u"0");
    for (int i = 0; i < 80; ++i)
        folder = card->addFolder(u"F", folder);
    connectRootOnly();
    const auto result = load();
    EXPECT_EQ(result.listing.objects.size(), 65U);
    EXPECT_EQ(handleRequests(), 65U);
    EXPECT_EQ(result.end, End::Complete);
}

TEST_F(RootOnlyListing, AFolderThatFailsIsPassedOver)
{
    const std::uint32_t a = card->addFolder(u"A");
    const std::uint32_t b = card->addFolder(u"B");
    const std::uint32_t inA = card->addFile(u"IN_A", 1, a);
    card->addFile(u"IN_B", 1, b);
    connectRootOnly(FaultPlan().on(Operation::GetObjectHandles, answerWithArray({inA}, 9),
                                   Occurrences::nth(2)));
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A", "B", "IN_A", "IN_B"));
    EXPECT_TRUE(result.handlesFailed);
    EXPECT_EQ(result.end, End::Complete);
}

TEST_F(RootOnlyListing, AStopIsSeenBetweenFolders)
{
    const std::uint32_t a = card->addFolder(u"A");
    card->addFile(u"IN_A", 1, a);
    connectRootOnly();
    std::size_t done = 0;
    ContentLoader loader(
        engine, {}, [&done](const auto& progress) { done = progress.done; },
        [&done] { return done == 2; });
    EXPECT_EQ(loader.load().end, End::Stopped);
}

}  // namespace
