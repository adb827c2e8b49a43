// Deletions that the camera confirms and does not carry out, or the other way round.
#include "content/DeleteRun.h"
#include "content/DeleteRunObserver.h"
#include "faults/FaultFixture.h"

using namespace nivor;
using namespace nivor::test;

namespace {

using Operation = OperationCode;
using Strings = std::vector<std::string>;

struct DeleteRow {
    std::string name;
    FaultPlan faults{};
    std::vector<std::string> failures{"", "", ""};  ///< of A, B and C; empty = deleted
    Strings left{};                                 ///< what a new listing shows
    Strings log{};

    friend void PrintTo(const DeleteRow& row, std::ostream* out) { *out << row.name; }
};

std::vector<DeleteRow> deleteRows()
{
    const auto second = Occurrences::nth(2);
    const auto line = [](const char* result, int code, int handle) {
        return "deleteObject (result = " + std::string(result) + ", responseCode = "
            + std::to_string(code) + ", objHdr = <0" + std::to_string(handle) + "000000>)";
    };
    const std::string success = "startDeletingItem (result = success)";
    const std::string fail = "startDeletingItem (result = fail)";
    const std::string silent = "the camera did not answer in time";
    return {
        {.name = "IsTrue", .log = {"startDeletingItems (deleteItemCount = 3)", success}},
        // What the camera says counts; only a new listing can show that it lied.
        {.name = "AnswersOKAndKeepsOne",
         .faults = FaultPlan().on(Operation::DeleteObject, fault::KeepObject{}, second),
         .left = {"B.JPG"},
         .log = {line("success", 8193, 2), success}},
        {.name = "AnswersOKAndKeepsAll",
         .faults = FaultPlan().on(Operation::DeleteObject, fault::KeepObject{}),
         .left = {"A.JPG", "B.JPG", "C.JPG"},
         .log = {success}},
        {.name = "RefusesOne",
         .faults =
             FaultPlan().on(Operation::DeleteObject,
                            fault::Refuse{.code = ResponseCode::ObjectWriteProtected}, second),
         .failures = {"", "the camera refused: Object WriteProtected (0x200D)", ""},
         .left = {"B.JPG"},
         .log = {line("fail", 8205, 2), line("success", 8193, 3), success}},
        {.name = "RefusesTheLast",
         .faults = FaultPlan().on(Operation::DeleteObject,
                                  fault::Refuse{.code = ResponseCode::StoreReadOnly},
                                  Occurrences::nth(3)),
         .failures = {"", "", "the camera refused: Store Read-Only (0x200E)"},
         .left = {"C.JPG"},
         .log = {line("fail", 8206, 3), fail}},
        {.name = "IsBusyForEver",
         .faults = FaultPlan().on(Operation::DeleteObject,
                                  fault::Refuse{.code = ResponseCode::DeviceBusy}),
         .failures = Strings(3, "the camera refused: Device Busy (0x2019)"),
         .left = {"A.JPG", "B.JPG", "C.JPG"},
         .log = {line("fail", 8217, 1), fail}},
        {.name = "IsSilentOnce",
         .faults = FaultPlan().on(Operation::DeleteObject, fault::Silence{}, second),
         .failures = {"", silent, ""},
         .left = {"B.JPG"},
         .log = {line("fail", 0, 2), success}},
        {.name = "DeletesAndSaysNothing",
         .faults =
             FaultPlan().on(Operation::DeleteObject, fault::RepeatResponse{.times = 0}, second),
         .failures = {"", silent, ""},
         .log = {line("fail", 0, 2)}},
        {.name = "DeletesAndSaysOtherwise",
         .faults = FaultPlan().on(Operation::DeleteObject,
                                  fault::Refuse{.code = ResponseCode::GeneralError,
                                                .place = fault::Refuse::Place::AfterData},
                                  second),
         .failures = {"", "the camera refused: General Error (0x2002)", ""}},
        {.name = "Leaves",
         .faults = FaultPlan().on(Operation::DeleteObject, fault::Vanish{}, second),
         .failures = {"", goneText, "the camera is gone"},
         .left = {"(goneText)"},
         .log = {line("fail", 0, 2), fail}},
    };
}

class SilentObserver : public DeleteRunObserver {
public:
    bool isStopRequested() override { return false; }
};

class DeleteFaults : public FaultCells<DeleteRow> { };

TEST_P(DeleteFaults, CountWhatTheCameraSaysAndAReloadShowsWhatItDid)
{
    for (const char16_t* name : {u"A.JPG", u"B.JPG", u"C.JPG"})
        card->addFile(name, 100);
    connect(seam(), {.faults = row().faults});
    const auto listing = load();
    ASSERT_EQ(listing.listing.objects.size(), 3U);

    SilentObserver observer;
    DeleteRun run(*engine, log.logger(), listing.listing.handles, observer);
    const DeleteResult result = run.startDeletingItems(listing.listing.objects);
    Strings failures;
    for (const DeletedFile& file : result.files) {
        failures.push_back(file.failure);
        EXPECT_EQ(file.isDeleted, file.failure.empty());
    }
    EXPECT_EQ(failures, row().failures);
    EXPECT_EQ(result.isError, !row().failures.back().empty());
    EXPECT_TRUE(logTells(row().log));

    const auto reloaded = load();
    const Strings left = reloaded.end == ContentLoader::End::NoStorage
        ? Strings{"(goneText)"}
        : namesOf(reloaded.listing.objects);
    EXPECT_EQ(left, row().left);
}

INSTANTIATE_TEST_SUITE_P(Cells, DeleteFaults,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(deleteRows())),
                         nameOfCell<DeleteRow>);

}  // namespace
