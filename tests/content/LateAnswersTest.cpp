// A camera that takes longer than anybody waits: what it says then is about something else.
#include "content/CopyComparison.h"
#include "content/CopyRunFixture.h"
#include "content/DeleteRun.h"
#include "content/DeleteRunObserver.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

/// Its engine waits half the time: two and a half seconds for each answer. One answer to one
/// operation takes half as long again, so that it comes while the next one is waited for.
class LateAnswers : public CopyRunFixture {
protected:
    void connectLate(OperationCode operation, std::uint64_t occurrence = 2)
    {
        for (const char16_t* name : {u"A", u"B", u"C", u"D"})
            handles.push_back(card->addFile(name, 1000));
        camera = std::make_shared<SimulatedCamera>(
            card,
            CameraSettings{.faults = FaultPlan().on(operation, fault::Delay{3750ms},
                                                    Occurrences::nth(occurrence))});
        host->attach(camera);
        ASSERT_TRUE(quick.connect(anyVendorID));
    }

    PTPCommunication quick{{.host = host, .logger = &log.logger(), .agentPause = {}, .pace = 2}};
};

TEST_F(LateAnswers, DescribeNoOtherObject)
{
    connectLate(OperationCode::GetObjectInfo);
    const auto result = ContentLoader(quick, {}).load();
    // B was not answered in time, C's first answer was B's.
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A", "C", "D"));
    EXPECT_EQ(result.listing.objects.at(1)->myHandle(), QString::number(handles.at(2)));
    EXPECT_EQ(result.failedObjects, 1U);
    EXPECT_EQ(result.end, ContentLoader::End::Complete);
}

TEST_F(LateAnswers, AreNoStorages)
{
    connectLate(OperationCode::GetStorageIDs);
    std::vector<std::uint32_t> storageIDs;
    ASSERT_TRUE(quick.getStorageIDs(&storageIDs));
    ASSERT_FALSE(quick.getStorageIDs(&storageIDs));  // late
    const auto result = ContentLoader(quick, {}).load();
    EXPECT_EQ(result.end, ContentLoader::End::NoStorage);
    EXPECT_TRUE(result.listing.objects.empty());
    // In step again.
    EXPECT_EQ(ContentLoader(quick, {}).load().listing.objects.size(), 4U);
}

TEST_F(LateAnswers, AreNoHandles)
{
    const std::uint32_t folderHandle = card->addFolder(u"DCIM");
    card->addFile(u"A", 10, folderHandle);
    // Every four bytes of this thumbnail would pass for a handle.
    card->setThumbnail(card->addFile(u"T", 10), ByteBuffer(4000, 7));
    camera = std::make_shared<SimulatedCamera>(
        card,
        CameraSettings{.faults = FaultPlan().on(OperationCode::GetThumb, fault::Delay{3750ms}),
                       .listing = ListingStyle::RootOnly});
    host->attach(camera);
    ASSERT_TRUE(quick.connect(anyVendorID));
    const auto result = ContentLoader(quick, {}).load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("DCIM", "T"));
    EXPECT_EQ(result.listing.handles.size(), 2);
    EXPECT_TRUE(result.handlesFailed);
    EXPECT_EQ(result.failure, "the camera's answer was to an earlier question");
}

TEST_F(LateAnswers, AreNoCopies)
{
    connectLate(OperationCode::GetObject);
    const ContentListing listing = ContentLoader(quick, {}).load().listing;
    CopyRun run(quick, log.logger(), listing.handles, observer);
    const CopyResult result = run.startCopyingItems(listing.objects, folder(), progress);
    ASSERT_EQ(result.files.size(), 4U);
    EXPECT_TRUE(result.files.at(0).isCopied);
    EXPECT_EQ(result.files.at(1).failure, "the camera did not answer in time");
    // All 1000 bytes of it came, but they are B's.
    EXPECT_TRUE(holdsObject(folder() / "C", handles.at(1), 1000));
    EXPECT_EQ(result.files.at(2).failure, "the camera's answer was to an earlier question");
    EXPECT_TRUE(result.files.at(3).isCopied);
    EXPECT_TRUE(holdsObject(folder() / "D", handles.at(3), 1000));
}

TEST_F(LateAnswers, AreHeldAgainstNoCopy)
{
    connectLate(OperationCode::GetObject, 6);  // the second of those that are compared
    const ContentListing listing = ContentLoader(quick, {}).load().listing;
    CopyRun run(quick, log.logger(), listing.handles, observer);
    CopyResult result = run.startCopyingItems(listing.objects, folder(), progress);
    ASSERT_EQ(result.copiedCount(), 4U);
    CopyComparison comparison(quick, log.logger(), listing.handles, observer);
    comparison.compareCopies(result, progress);
    EXPECT_EQ(result.files.at(0).failure, "");
    EXPECT_THAT(result.files.at(1).failure, HasSubstr("the camera did not answer in time"));
    EXPECT_THAT(result.files.at(2).failure,
                HasSubstr("the camera's answer was to an earlier question"));
    EXPECT_EQ(result.files.at(3).failure, "");
}

TEST_F(LateAnswers, ConfirmNoDeletion)
{
    DeleteRunObserver witness;
    connectLate(OperationCode::DeleteObject);
    const ContentListing listing = ContentLoader(quick, {}).load().listing;
    DeleteRun run(quick, log.logger(), listing.handles, witness);
    const DeleteResult result = run.startDeletingItems(listing.objects);
    ASSERT_EQ(result.files.size(), 4U);
    EXPECT_TRUE(result.files.at(0).isDeleted);
    EXPECT_FALSE(result.files.at(1).isDeleted);
    EXPECT_FALSE(result.files.at(2).isDeleted);
    EXPECT_EQ(result.files.at(2).failure, "the camera's answer was to an earlier question");
    EXPECT_TRUE(result.files.at(3).isDeleted);
}

}  // namespace
