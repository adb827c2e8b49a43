// A camera that takes longer than anybody waits: what it says then is about something else.
#include "content/CopyRunFixture.h"
#include "content/DeleteRun.h"
#include "content/DeleteRunObserver.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

/// Its engine waits a twentieth of the time: 250 ms for each answer. The second answer to one
/// operation takes 400.
class LateAnswers : public CopyRunFixture {
protected:
    void connectLate(OperationCode operation)
    {
        for (const char16_t* name : {u"A", u"B", u"C", u"D"})
            handles.push_back(card->addFile(name, 1000));
        camera = std::make_shared<SimulatedCamera>(
            card,
            CameraSettings{
                .faults = FaultPlan().on(operation, fault::Delay{400ms}, Occurrences::nth(2))});
        host->attach(camera);
        ASSERT_TRUE(quick.connect(anyVendorID));
    }

    PTPCommunication quick{{.host = host, .logger = &log.logger(), .agentPause = {}, .pace = 20}};
};

TEST_F(LateAnswers, DescribeNoOtherObject)
{
    connectLate(OperationCode::GetObjectInfo);
    const auto result = ContentLoader(quick, {}).load();
    // B was not answered in time, and C's answer was B's.
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A"));
    EXPECT_EQ(result.end, ContentLoader::End::TooManyFailures);
    EXPECT_EQ(result.failure, "the camera's answer was to an earlier question");
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
    connectLate(OperationCode::GetStorageIDs);
    std::vector<std::uint32_t> storageIDs;
    HandlesDict named;
    ASSERT_TRUE(quick.getStorageIDs(&storageIDs));
    ASSERT_FALSE(quick.getStorageIDs(&storageIDs));
    // One element, the storage, which would pass for a handle.
    EXPECT_TRUE(quick.getObjectHandles(1, named));
    EXPECT_TRUE(quick.isAnswerEarlier());
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
