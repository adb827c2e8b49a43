// Copies of files whose size is not what the camera says it is, to the byte on the disk.
#include "faults/FaultFixture.h"

using namespace nivor;
using namespace nivor::test;

namespace {

using Operation = OperationCode;
using Strings = std::vector<std::string>;

constexpr std::uint64_t mebi = std::uint64_t{1} << 20;

struct CopyRow {
    std::string name;
    std::uint64_t truth = 1000;  ///< bytes that the camera has
    FaultPlan faults{};
    std::uint64_t listed = 1000;            ///< what the list says
    std::optional<std::uint64_t> onDisk{};  ///< bytes that are the file's own; none = all of them
    std::uint64_t behind = 0;               ///< bytes on the disk that are not
    std::string failure{};                  ///< empty = it is copied
    bool nextIsCopied = true;               ///< what was asked for next came whole
    Strings log{};

    friend void PrintTo(const CopyRow& row, std::ostream* out) { *out << row.name; }
};

fault::RawAnswer property(std::uint64_t value)
{
    ByteBuffer bytes;
    appendLittleEndian(bytes, value);
    return answerWith(bytes);
}

FaultPlan announced(std::uint32_t size)
{
    return FaultPlan().on(Operation::GetObjectInfo, fault::UntrueObjectInfo{.objectSize = size},
                          Occurrences::nth(1));
}

/// The size field is full, so that the property is asked for.
FaultPlan full(fault::Effect answerToProperty)
{
    return announced(0xFFFFFFFF).on(Operation::GetObjectPropValue, std::move(answerToProperty));
}

/// The same, and the container does not say how long it is either.
FaultPlan unknown(fault::Effect answerToProperty)
{
    return full(std::move(answerToProperty))
        .on(Operation::GetObject, fault::ContainerLength{.value = 0xFFFFFFFF}, Occurrences::nth(1));
}

std::vector<CopyRow> copyRows()
{
    const fault::Refuse refusal{.code = ResponseCode::InvalidObjectPropCode};
    const auto first = Occurrences::nth(1);
    const std::string more = "the camera sent more than it announced";
    const std::string fail = "startCopyingItem (result = fail)";
    const std::string success = "startCopyingItem (result = success)";
    return {
        {.name = "IsTrue", .log = {"startCopyingItems (copyItemCount = 2)", success}},
        {.name = "IsEmpty",
         .truth = 0,
         .listed = 0,
         .failure = "it holds 0 bytes, and the camera sends nothing for it"},
        {.name = "IsAnnouncedEmpty",
         .faults = announced(0),
         .listed = 0,
         .failure = "0 bytes were announced and 1000 arrived",
         .log = {"getObject (result = success, objHdr = <01000000>)"}},
        {.name = "IsAnnouncedSmaller",
         .faults = announced(500),
         .listed = 500,
         .failure = "500 bytes were announced and 1000 arrived"},
        {.name = "IsAnnouncedLarger",
         .faults = announced(2000),
         .listed = 2000,
         .failure = "2000 bytes were announced and 1000 arrived"},
        {.name = "IsAnnouncedAsNearlyFourGibibytes",
         .faults = announced(0xFFFFFFFE),
         .listed = 0xFFFFFFFE,
         .failure = "4294967294 bytes were announced and 1000 arrived"},
        {.name = "HasTheProperty",
         .faults = announced(0xFFFFFFFF),
         .log = {"getObjectPropValue (result = success, objHdr = <01000000>, propVal = 1000)"}},
        {.name = "HasNoProperty",
         .faults = full(refusal),
         .listed = 0,
         .failure = "0 bytes were announced and 1000 arrived",
         .log = {"getObjectPropValue (result = fail, objHdr = <01000000>, propVal = 0)"}},
        {.name = "IsSilentAboutTheProperty",
         .faults = full(fault::Silence{}),
         .listed = 0,
         .failure = "0 bytes were announced and 1000 arrived"},
        {.name = "CutsTheProperty",
         .faults = full(answerWith({1, 2, 3, 4})),
         .listed = 0,
         .failure = "0 bytes were announced and 1000 arrived"},
        {.name = "HasAnUntrueProperty",
         .faults = full(property(std::uint64_t{5} << 30)),
         .listed = std::uint64_t{5} << 30,
         .failure = "5368709120 bytes were announced and 1000 arrived"},
        {.name = "HasTheLargestProperty",
         .faults = full(property(0xFFFFFFFFFFFFFFFF)),
         .listed = 0xFFFFFFFFFFFFFFFF,
         .failure = "18446744073709551615 bytes were announced and 1000 arrived"},

        // Containers that don't say how long they are.
        {.name = "SaysItsSizeInThePropertyAlone",
         .truth = 3 * mebi,
         .faults =
             announced(0xFFFFFFFF)
                 .on(Operation::GetObject, fault::ContainerLength{.value = 0xFFFFFFFF}, first),
         .listed = 3 * mebi},
        {.name = "SaysItsSizeNowhere",
         .truth = 3 * mebi,
         .faults = unknown(refusal),
         .listed = 0,
         .onDisk = 5108,
         .failure = more,
         .log = {"ReceiveCallback (cancel = success)",
                 "getObject (result = fail, objHdr = <01000000>)"}},
        {.name = "SaysTooLittle",
         .truth = 3 * mebi,
         .faults = unknown(property(6000)),
         .listed = 6000,
         .onDisk = 10228,
         .failure = more,
         .log = {"ReceiveCallback (cancel = success)"}},
        {.name = "SaysTooMuch",
         .faults = unknown(property(5 * mebi)),
         .listed = 5 * mebi,
         .behind = 12,
         .failure = "the camera did not answer in time"},
        {.name = "SaysFarTooMuch",
         .faults = unknown(property(0xFFFFFFFFFFFFFFFF - 12)),
         .listed = 0xFFFFFFFFFFFFFFFF - 12,
         .behind = 12,
         .failure = "the camera did not answer in time"},

        // Answers that are no answer.
        {.name = "Refuses",
         .faults = FaultPlan().on(Operation::GetObject,
                                  fault::Refuse{.code = ResponseCode::AccessDenied}, first),
         .onDisk = 0,
         .failure = "the camera refused: Access Denied (0x200F)"},
        {.name = "IsBusyForEver",
         .faults =
             FaultPlan().on(Operation::GetObject, fault::Refuse{.code = ResponseCode::DeviceBusy}),
         .onDisk = 0,
         .failure = "the camera refused: Device Busy (0x2019)",
         .nextIsCopied = false,
         .log = {fail}},
        // What has come whole is whole, whatever is said of it.
        {.name = "RefusesBehindAllOfTheData",
         .faults = FaultPlan().on(Operation::GetObject,
                                  fault::Refuse{.code = ResponseCode::IncompleteTransfer,
                                                .place = fault::Refuse::Place::AfterData},
                                  first)},
        {.name = "IsSilent",
         .faults = FaultPlan().on(Operation::GetObject, fault::Silence{}, first),
         .onDisk = 0,
         .failure = "the camera did not answer in time"},
    };
}

class CopyFaults : public FaultCells<CopyRow> { };

TEST_P(CopyFaults, CountOnlyWhatIsWholeAsCopied)
{
    const std::uint32_t handle = card->addFile(u"FIRST.MOV", row().truth);
    const std::uint32_t next = card->addFile(u"NEXT.JPG", 300);
    connect(seam(), {.faults = row().faults});
    const auto listing = load();
    ASSERT_EQ(listing.listing.objects.size(), 2U) << listing.failure;
    EXPECT_EQ(listing.listing.objects[0]->objectCompressedSize(), row().listed);

    const CopyResult result = copy(listing.listing);
    ASSERT_EQ(result.files.size(), 2U);
    EXPECT_EQ(result.files[0].failure, row().failure);
    EXPECT_EQ(result.files[0].isCopied, row().failure.empty());
    EXPECT_EQ(result.files[1].isCopied, row().nextIsCopied) << result.files[1].failure;
    EXPECT_EQ(result.isError, !row().nextIsCopied);

    ByteBuffer bytes = bytesOf(destination.path() / "FIRST.MOV");
    const std::uint64_t own = row().onDisk.value_or(row().truth);
    ASSERT_EQ(bytes.size(), own + row().behind);
    bytes.resize(own);
    EXPECT_TRUE(PatternContent(handle).matches(0, bytes));
    if (row().nextIsCopied) {
        EXPECT_TRUE(holdsObject(destination.path() / "NEXT.JPG", next, 300));
    }
    EXPECT_TRUE(logTells(row().log));
}

INSTANTIATE_TEST_SUITE_P(Cells, CopyFaults,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(copyRows())),
                         nameOfCell<CopyRow>);

}  // namespace
