// What a listing makes of a camera that names its objects wrongly, or stops naming them.
#include "faults/FaultFixture.h"

using namespace nivor;
using namespace nivor::test;

namespace {

using End = ContentLoader::End;
using Operation = OperationCode;
using Strings = std::vector<std::string>;

struct ListingRow {
    std::string name;
    FaultPlan faults{};
    ListingStyle style = ListingStyle::WholeStorage;
    End end = End::Complete;
    Strings listed{};
    std::size_t failed = 0;
    bool handlesFailed = false;
    std::string failure{};
    Strings log{};

    friend void PrintTo(const ListingRow& row, std::ostream* out) { *out << row.name; }
};

const Strings everything{"DCIM", "A.JPG", "B.JPG", "C.JPG"};

fault::Refuse refusal(ResponseCode code)
{
    return {.code = code};
}

/// Handles 1 to 4 are DCIM and the three files in it.
std::vector<ListingRow> listingRows()
{
    const auto storages = [](const std::string& list) {
        return "getStorageIDs (result = success, storageIDs = (" + list + "))";
    };
    const auto handles = [](int count) {
        return "getObjectHandles (result = success, objectHandlesCount = " + std::to_string(count)
            + ")";
    };
    return {
        // Handles.
        {.name = "NamesHandlesAgainAndAgain",
         .faults =
             FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 2, 1, 2, 2, 3, 4, 1})),
         .listed = everything,
         .log = {handles(4)}},
        {.name = "AnnouncesMoreHandlesThanItNames",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 2}, 5)),
         .listed = {"DCIM", "A.JPG"},
         .handlesFailed = true,
         .failure = "the camera announced more objects than it named"},
        {.name = "AnnouncesFourBillionHandles",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 3}, 0xFFFFFFFF)),
         .listed = {"DCIM", "B.JPG"},
         .handlesFailed = true,
         .failure = "the camera announced more objects than it named"},
        {.name = "NamesMoreHandlesThanItAnnounces",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 2, 3, 4}, 2)),
         .listed = {"DCIM", "A.JPG"},
         .log = {handles(2)}},
        {.name = "CutsTheCountOfHandles",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWith({4, 0})),
         .handlesFailed = true,
         .failure = "the camera announced more objects than it named"},
        {.name = "NamesNoHandles",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWithArray({})),
         .log = {handles(0)}},
        {.name = "RefusesToNameHandles",
         .faults =
             FaultPlan().on(Operation::GetObjectHandles, refusal(ResponseCode::StoreNotAvailable)),
         .handlesFailed = true,
         .failure = "the camera refused: Store Not Available (0x2013)",
         .log = {"getObjectHandles (result = fail, objectHandlesCount = 0)"}},
        {.name = "IsSilentAboutHandles",
         .faults = FaultPlan().on(Operation::GetObjectHandles, fault::Silence{}),
         .handlesFailed = true,
         .failure = "the camera did not answer in time",
         .log = {"ReadPipe : timeout1 retry",
                 "getObjectHandles (result = fail, objectHandlesCount = 0)"}},
        {.name = "NamesAHandleThatVanished",
         .faults = FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 2, 99, 4})),
         .listed = {"DCIM", "A.JPG", "C.JPG"},
         .failed = 1,
         .failure = "the camera refused: Invalid ObjectHandle (0x2009)",
         .log = {"getObjectInfo (result = fail, objHdr = <63000000>, fileName = (null))"}},
        {.name = "NamesTwoHandlesThatVanishedInARow",
         .faults =
             FaultPlan().on(Operation::GetObjectHandles, answerWithArray({1, 2, 99, 98, 100})),
         .end = End::TooManyFailures,
         .listed = {"DCIM", "A.JPG"},
         .failed = 2,
         .failure = "the camera refused: Invalid ObjectHandle (0x2009)"},
        {.name = "DescribesEveryOtherObjectOnly",
         .faults = FaultPlan()
                       .on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(2))
                       .on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(4)),
         .listed = {"DCIM", "B.JPG"},
         .failed = 2},
        {.name = "IsSilentAboutEveryObject",
         .faults = FaultPlan().on(Operation::GetObjectInfo, fault::Silence{}),
         .end = End::TooManyFailures,
         .failed = 2,
         .failure = "the camera did not answer in time"},

        // Storages.
        {.name = "HasNoStorage",
         .faults = FaultPlan().on(Operation::GetStorageIDs, answerWithArray({})),
         .end = End::NoStorage,
         .log = {"getStorageIDs (result = fail, storageIDs = (null))"}},
        {.name = "AnnouncesFourBillionStorages",
         .faults = FaultPlan().on(Operation::GetStorageIDs,
                                  answerWithArray({0x00010001, 0x00020001}, 0xFFFFFFFF)),
         .listed = everything,
         .log = {storages("65537, 131073"), handles(4)}},
        {.name = "NamesAStorageThatIsNotThere",
         .faults = FaultPlan().on(Operation::GetStorageIDs, answerWithArray({0x00090009})),
         .handlesFailed = true,
         .failure = "the camera refused: Invalid StorageID (0x2008)",
         .log = {storages("589833")}},

        // Busy.
        {.name = "IsBusyForEver",
         .faults = FaultPlan().onAny(refusal(ResponseCode::DeviceBusy), Occurrences::from(2)),
         .end = End::NoStorage,
         .failure = "the camera refused: Device Busy (0x2019)",
         .log = {"Connect", "getStorageIDs (result = fail, storageIDs = (null))"}},
        {.name = "IsBusyForEverFromTheHandlesOn",
         .faults = FaultPlan().onAny(refusal(ResponseCode::DeviceBusy), Occurrences::from(3)),
         .handlesFailed = true,
         .failure = "the camera refused: Device Busy (0x2019)"},
        {.name = "IsBusyForEverFromTheSecondObjectOn",
         .faults = FaultPlan().on(Operation::GetObjectInfo, refusal(ResponseCode::DeviceBusy),
                                  Occurrences::from(2)),
         .end = End::TooManyFailures,
         .listed = {"DCIM"},
         .failed = 2,
         .failure = "the camera refused: Device Busy (0x2019)"},
        {.name = "IsBusyOnceInAWhile",
         .faults = FaultPlan().on(Operation::GetObjectInfo, refusal(ResponseCode::DeviceBusy),
                                  Occurrences::nth(3)),
         .listed = {"DCIM", "A.JPG", "C.JPG"},
         .failed = 1,
         .failure = "the camera refused: Device Busy (0x2019)"},

        // Leaving.
        {.name = "LeavesWhenAskedForStorages",
         .faults = FaultPlan().on(Operation::GetStorageIDs, fault::Vanish{}),
         .end = End::NoStorage,
         .failure = goneText},
        {.name = "LeavesAmidTheHandles",
         .faults = FaultPlan().on(Operation::GetObjectHandles, fault::Vanish{.afterBytes = 20}),
         .handlesFailed = true,
         .failure = goneText},
        {.name = "LeavesAmidAnObject",
         .faults = FaultPlan().on(Operation::GetObjectInfo, fault::Vanish{.afterBytes = 30},
                                  Occurrences::nth(3)),
         .end = End::TooManyFailures,
         .listed = {"DCIM", "A.JPG"},
         .failed = 2,
         .failure = goneText},

        // Cameras that are asked for one folder after another.
        {.name = "NamesTheTopAlone", .style = ListingStyle::RootOnly, .listed = everything},
        {.name = "NamesEverythingInEveryFolder",
         .faults = FaultPlan()
                       .on(Operation::GetObjectHandles, answerWithArray({1}), Occurrences::nth(1))
                       .on(Operation::GetObjectHandles, answerWithArray({1, 2, 3, 4}),
                           Occurrences::from(2)),
         .listed = everything},
        {.name = "RefusesToNameWhatIsInAFolder",
         .faults = FaultPlan().on(Operation::GetObjectHandles, refusal(ResponseCode::AccessDenied),
                                  Occurrences::nth(2)),
         .style = ListingStyle::RootOnly,
         .listed = {"DCIM"},
         .handlesFailed = true,
         .failure = "the camera refused: Access Denied (0x200F)"},
    };
}

class ListingFaults : public FaultCells<ListingRow> { };

TEST_P(ListingFaults, GiveWhatCameAndSayWhy)
{
    const std::uint32_t folder = card->addFolder(u"DCIM");
    for (const char16_t* name : {u"A.JPG", u"B.JPG", u"C.JPG"})
        card->addFile(name, 100, folder);
    connect(seam(), {.faults = row().faults, .listing = row().style});

    const auto result = load();
    EXPECT_EQ(result.end, row().end);
    EXPECT_EQ(namesOf(result.listing.objects), row().listed);
    EXPECT_EQ(result.failedObjects, row().failed);
    EXPECT_EQ(result.handlesFailed, row().handlesFailed);
    EXPECT_EQ(result.failure, row().failure);
    EXPECT_TRUE(logTells(row().log));
}

INSTANTIATE_TEST_SUITE_P(Cells, ListingFaults,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(listingRows())),
                         nameOfCell<ListingRow>);

/// A chain of folders, each in the one before.
void addNestedFolders(MemoryCard& card, int count)
{
    std::uint32_t parent = noHandle;
    for (int i = 0; i < count; ++i)
        parent = card.addFolder(u"F", parent);
}

class NestedFolders : public FaultFixture { };

TEST_F(NestedFolders, AreNotFollowedForEverWhenAskedForOneByOne)
{
    addNestedFolders(*card, 500);
    connect(Seam::Memory, {.listing = ListingStyle::RootOnly});
    const auto result = load();
    EXPECT_EQ(result.end, End::Complete);
    EXPECT_EQ(result.listing.objects.size(), 1U + ContentLoader::deepestLevel);
    EXPECT_EQ(stage->camera().record().requestsOf(Operation::GetObjectHandles),
              1U + ContentLoader::deepestLevel);
}

}  // namespace
