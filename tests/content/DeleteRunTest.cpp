#include "content/DeleteRun.h"

#include "content/DeleteRunObserver.h"
#include "content/SimulatedCameraFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

constexpr const char* deleteEvent = "AppDelegate startDeletingItems:";

/// Keeps a model up to date, as a window would.
class ModelKeeper : public DeleteRunObserver {
public:
    explicit ModelKeeper(ContentListing& model)
        : model_(model)
    {
    }

    void fileWillBeDeleted(const ObjectInfoData& /*object*/, std::size_t number,
                           std::size_t total) override
    {
        announced.emplace_back(number, total);
    }

    bool isStopRequested() override { return announced.size() == stopAfter; }

    void fileDidFinish(const DeletedFile& file) override
    {
        if (file.isDeleted)
            model_.remove(file.object->myHandle());
    }

    std::vector<std::pair<std::size_t, std::size_t>> announced;
    std::size_t stopAfter = 1000;

private:
    ContentListing& model_;
};

class DeleteRunTest : public SimulatedCameraFixture {
protected:
    void addThreeFilesAndAFolder()
    {
        const std::uint32_t folder = card->addFolder(u"DCIM");
        for (const char16_t* name : {u"A.JPG", u"B.JPG", u"C.JPG"})
            card->addFile(name, 10, folder);
    }

    DeleteResult deleteAll(std::size_t stopAfter = 1000)
    {
        model = load({.thumbnails = false}).listing;
        ModelKeeper keeper(model);
        keeper.stopAfter = stopAfter;
        DeleteRun run(engine, log.logger(), model.handles, keeper);
        // A copy of the list: the model changes while the run goes over it.
        DeleteResult result = run.startDeletingItems(ObjectList(model.objects));
        announced = keeper.announced;
        return result;
    }

    ContentListing model;
    std::vector<std::pair<std::size_t, std::size_t>> announced;
};

TEST_F(DeleteRunTest, FilesGoAndFoldersStay)
{
    addThreeFilesAndAFolder();
    connect();
    const DeleteResult result = deleteAll();
    EXPECT_EQ(result.deletedCount(), 3U);
    EXPECT_FALSE(result.isError);
    EXPECT_THAT(namesOf(model.objects), ElementsAre("DCIM"));
    EXPECT_EQ(model.handles.size(), 1);
    EXPECT_EQ(card->handles().size(), 1U);
    EXPECT_EQ(camera->record().requestsOf(OperationCode::DeleteObject), 3U);
    EXPECT_THAT(announced, ElementsAre(std::pair(1U, 3U), std::pair(2U, 3U), std::pair(3U, 3U)));
    EXPECT_THAT(log.messagesOf(deleteEvent),
                ElementsAre("startDeletingItems (deleteItemCount = 4)",
                            "startDeletingItem (result = success)"));
}

TEST_F(DeleteRunTest, ARefusalInTheMiddleLeavesThatFileOnly)
{
    addThreeFilesAndAFolder();
    connectWith(FaultPlan().on(OperationCode::DeleteObject,
                               fault::Refuse{ResponseCode::ObjectWriteProtected},
                               Occurrences::nth(2)));
    const DeleteResult result = deleteAll();
    EXPECT_THAT(namesOf(model.objects), ElementsAre("DCIM", "B.JPG"));
    EXPECT_EQ(model.handles.size(), 2);
    ASSERT_EQ(result.files.size(), 3U);
    EXPECT_THAT(result.files.at(1).failure, HasSubstr("Object WriteProtected"));
    EXPECT_EQ(result.failedCount(), 1U);
    EXPECT_FALSE(result.isError);
    EXPECT_EQ(log.messagesOf(deleteEvent).back(), "startDeletingItem (result = success)");
}

TEST_F(DeleteRunTest, ARefusalOfTheLastFileIsTheRuns)
{
    addThreeFilesAndAFolder();
    connectWith(FaultPlan().on(OperationCode::DeleteObject,
                               fault::Refuse{ResponseCode::StoreReadOnly}, Occurrences::nth(3)));
    EXPECT_TRUE(deleteAll().isError);
    EXPECT_THAT(namesOf(model.objects), ElementsAre("DCIM", "C.JPG"));
    EXPECT_EQ(log.messagesOf(deleteEvent).back(), "startDeletingItem (result = fail)");
}

TEST_F(DeleteRunTest, OnlyFoldersMeansNothingToDo)
{
    card->addFolder(u"DCIM");
    connect();
    const DeleteResult result = deleteAll();
    EXPECT_TRUE(result.files.empty());
    EXPECT_EQ(camera->record().requestsOf(OperationCode::DeleteObject), 0U);
    EXPECT_THAT(log.messagesOf(deleteEvent),
                ElementsAre("startDeletingItems (deleteItemCount = 1)",
                            "startDeletingItem (result = success)"));
}

TEST_F(DeleteRunTest, AStopIsSeenBetweenFiles)
{
    addThreeFilesAndAFolder();
    connect();
    const DeleteResult result = deleteAll(1);
    EXPECT_TRUE(result.isStopped);
    EXPECT_EQ(result.deletedCount(), 1U);
    EXPECT_EQ(result.filesNotBegun, 2U);
    EXPECT_EQ(card->handles().size(), 3U);
}

TEST_F(DeleteRunTest, ACameraThatVanishesFailsTheRestAtOnce)
{
    addThreeFilesAndAFolder();
    connectWith(FaultPlan().on(OperationCode::DeleteObject, fault::Vanish{}, Occurrences::nth(1)));
    const auto began = std::chrono::steady_clock::now();
    const DeleteResult result = deleteAll();
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(4));
    EXPECT_EQ(result.failedCount(), 3U);
    EXPECT_EQ(result.files.back().failure, "the camera is gone");
    EXPECT_EQ(model.objects.size(), 4U);
}

TEST_F(DeleteRunTest, AnObjectThatIsNotListedFails)
{
    card->addFile(u"A.JPG", 10);
    connect();
    model = load().listing;
    ModelKeeper keeper(model);
    DeleteRun run(engine, log.logger(), {}, keeper);
    EXPECT_EQ(run.startDeletingItems(ObjectList(model.objects)).failedCount(), 1U);
    EXPECT_EQ(camera->record().requestsOf(OperationCode::DeleteObject), 0U);
}

TEST(ContentListing, RemovingForgetsObjectAndHandle)
{
    ContentListing listing;
    for (const char* handle : {"1", "2"}) {
        auto object = std::make_shared<ObjectInfoData>();
        object->setMyHandle(QString::fromLatin1(handle));
        listing.handles.insert(object->myHandle(), {});
        listing.objects.push_back(std::move(object));
    }
    listing.remove(QStringLiteral("1"));
    listing.remove(QStringLiteral("7"));
    ASSERT_EQ(listing.objects.size(), 1U);
    EXPECT_EQ(listing.objects.front()->myHandle(), QStringLiteral("2"));
    EXPECT_EQ(listing.handles.keys(), QStringList(QStringLiteral("2")));
}

}  // namespace
