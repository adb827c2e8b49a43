#include "datasets/ObjectInfoData.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "foundation/ByteWriter.h"
#include "foundation/Errors.h"
#include "ptp/GetObjectCallback.h"
#include "support/EngineFixture.h"

#include <future>

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class Operations : public EngineFixture {
protected:
    Operations() { attachDirectly(); }

    /// Answers the next command with a data phase and OK.
    void answerData(std::uint16_t operation, const ByteBuffer& payload)
    {
        pipes().answerWrite(1, {data(operation, payload), response(0x2001)});
    }

    void answer(std::uint16_t code) { pipes().answerWrite(1, {response(code)}); }

    /// The last command without its transaction ID.
    ByteBuffer lastCommand() const
    {
        ByteBuffer command = device->interface->written().back();
        std::fill(command.begin() + 8, command.begin() + 12, std::uint8_t{0});
        return command;
    }

    bool isLockFree()
    {
        return std::async(std::launch::async,
                          [this] {
                              const std::unique_lock guard(engine.lock(), std::try_to_lock);
                              return guard.owns_lock();
                          })
            .get();
    }

    const HandleBlock handle{{0x0A, 0x00, 0x01, 0x00}};
};

ByteBuffer objectInfo(const std::string& name)
{
    ByteBuffer bytes = parameters({0x00010001});                  // StorageID
    appendLittleEndian<std::uint16_t>(bytes, 0x3801);             // ObjectFormat EXIF/JPEG
    appendLittleEndian<std::uint16_t>(bytes, 0);                  // ProtectionStatus
    appendLittleEndian<std::uint32_t>(bytes, 1000);               // ObjectCompressedSize
    appendLittleEndian<std::uint16_t>(bytes, 0x3808);             // ThumbFormat
    for (int i = 0; i < 6; ++i)                                   // ThumbCompressedSize,
        appendLittleEndian<std::uint32_t>(bytes, 0);              // pixels, bit depth
    appendLittleEndian<std::uint32_t>(bytes, 0);                  // ParentObject
    appendLittleEndian<std::uint16_t>(bytes, 0);                  // AssociationType
    appendLittleEndian<std::uint32_t>(bytes, 0);                  // AssociationDesc
    appendLittleEndian<std::uint32_t>(bytes, 0);                  // SequenceNumber
    bytes.push_back(static_cast<std::uint8_t>(name.size() + 1));  // Filename
    for (const char character : name + '\0')
        appendLittleEndian<std::uint16_t>(bytes, static_cast<std::uint16_t>(character));
    bytes.push_back(0);  // CaptureDate
    bytes.push_back(0);  // ModificationDate
    bytes.push_back(0);  // Keywords
    return bytes;
}

TEST_F(Operations, OpensSessionOne)
{
    answer(0x2001);
    EXPECT_TRUE(engine.openSession(1000));
    EXPECT_TRUE(engine.sessionOpen());
    EXPECT_THAT(lastCommand(),
                ElementsAre(16, 0, 0, 0, 1, 0, 0x02, 0x10,  // OpenSession
                            0, 0, 0, 0, 1, 0, 0, 0));       // session 1
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication openSession:", "openSession (result = success)"}));
}

TEST_F(Operations, AnswersYesToSessionAlreadyOpenWithoutASession)
{
    answer(0x201E);
    EXPECT_TRUE(engine.openSession(1000));
    EXPECT_FALSE(engine.sessionOpen());
}

TEST_F(Operations, FailsToOpenASessionOnASilentCamera)
{
    EXPECT_FALSE(engine.openSession(100));
    EXPECT_FALSE(engine.sessionOpen());
    EXPECT_EQ(log.last().message, "openSession (result = fail)");
}

TEST_F(Operations, ClosesNothingWithoutASession)
{
    EXPECT_TRUE(engine.closeSession());
    EXPECT_TRUE(pipes().written().empty());
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication closeSession", "closeSession (result = success)"}));
}

TEST_F(Operations, ClosesTheSessionWhateverTheResponse)
{
    engine.setSessionOpen(true);
    answer(0x2002);
    EXPECT_TRUE(engine.closeSession());
    EXPECT_FALSE(engine.sessionOpen());
    EXPECT_THAT(lastCommand(),
                ElementsAre(12, 0, 0, 0, 1, 0, 0x03, 0x10, 0, 0, 0, 0));  // CloseSession
}

TEST_F(Operations, ListsStorageIDsInTheCamerasOrder)
{
    answerData(0x1004, parameters({2, 0x00020001, 0x00010001}));
    std::vector<std::uint32_t> storageIDs{99};
    EXPECT_TRUE(engine.getStorageIDs(&storageIDs));
    EXPECT_THAT(storageIDs, ElementsAre(0x00020001U, 0x00010001U));
    EXPECT_THAT(lastCommand(), ElementsAre(12, 0, 0, 0, 1, 0, 0x04, 0x10, 0, 0, 0, 0));
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication getStorageIDs:",
                         "getStorageIDs (result = success, storageIDs = (131073, 65537))"}));
}

TEST_F(Operations, FailsOnAStorageListOfSixteenBytes)
{
    answerData(0x1004, parameters({0}));  // count 0
    std::vector<std::uint32_t> storageIDs{99};
    EXPECT_FALSE(engine.getStorageIDs(&storageIDs));
    EXPECT_THAT(storageIDs, ElementsAre(99U));
    EXPECT_EQ(log.last().message, "getStorageIDs (result = fail, storageIDs = (null))");
}

TEST_F(Operations, StopsAtTheEndOfAStorageListThatPromisesMore)
{
    answerData(0x1004, parameters({0xFFFFFFFF, 7}));  // count, one ID
    std::vector<std::uint32_t> storageIDs;
    EXPECT_TRUE(engine.getStorageIDs(&storageIDs));
    EXPECT_THAT(storageIDs, ElementsAre(7U));
}

TEST_F(Operations, FailsWithoutAPlaceForTheStorageIDs)
{
    answerData(0x1004, parameters({1, 7}));
    EXPECT_FALSE(engine.getStorageIDs(nullptr));
}

TEST_F(Operations, AsksForAllHandlesOfAStorage)
{
    answerData(0x1007, parameters({2, 10, 0xFFFFFFFF}));
    HandlesDict handles;
    EXPECT_TRUE(engine.getObjectHandles(0x00010001, handles));
    EXPECT_THAT(lastCommand(),
                ElementsAre(24, 0, 0, 0, 1, 0, 0x07, 0x10, 0, 0, 0, 0,  //
                            1, 0, 1, 0,                                 // storage
                            0, 0, 0, 0,                                 // all formats
                            0, 0, 0, 0));                               // all objects
    EXPECT_EQ(handles.size(), 2);
    EXPECT_EQ(handles.value(QStringLiteral("10")), HandleBlock::fromNumber(10));
    EXPECT_EQ(handles.value(QStringLiteral("4294967295")), HandleBlock::fromNumber(0xFFFFFFFF));
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication getObjectHandles:objectHandles:",
                         "getObjectHandles (result = success, objectHandlesCount = 2)"}));
}

TEST_F(Operations, CountsTheEntriesOfTwoStoragesInOneDictionary)
{
    HandlesDict handles;
    answerData(0x1007, parameters({2, 1, 2}));
    EXPECT_TRUE(engine.getObjectHandles(1, handles));
    answerData(0x1007, parameters({2, 2, 3}));  // 2 is repeated
    EXPECT_TRUE(engine.getObjectHandles(2, handles));
    EXPECT_EQ(log.last().message, "getObjectHandles (result = success, objectHandlesCount = 3)");
}

TEST_F(Operations, RaisesARangeErrorForHandlesThatWereNotSent)
{
    answerData(0x1007, parameters({3, 1, 2}));  // three announced, two sent
    HandlesDict handles;
    const std::size_t before =
        log.messagesOf("PTPCommunication getObjectHandles:objectHandles:").size();
    EXPECT_THROW(engine.getObjectHandles(1, handles), RangeError);
    EXPECT_TRUE(isLockFree());
    EXPECT_EQ(handles.size(), 2);
    EXPECT_EQ(log.messagesOf("PTPCommunication getObjectHandles:objectHandles:").size(), before);
}

TEST_F(Operations, RaisesARangeErrorForAHandleListWithoutACount)
{
    answerData(0x1007, {1, 0});  // half a count
    HandlesDict handles;
    EXPECT_THROW(engine.getObjectHandles(1, handles), RangeError);
    EXPECT_TRUE(isLockFree());
}

TEST_F(Operations, ReadsTheObjectSizeProperty)
{
    answerData(0x9803, {0, 0, 0, 0, 1, 0, 0, 0});  // 4 GiB
    ObjectPropValueObjectSize size;
    EXPECT_TRUE(engine.getObjectPropValue(handle, 0xDC04, &size));
    EXPECT_EQ(size.value(), 4294967296U);
    EXPECT_THAT(lastCommand(),
                ElementsAre(20, 0, 0, 0, 1, 0, 0x03, 0x98, 0, 0, 0, 0,  //
                            0x0A, 0x00, 0x01, 0x00,                     // handle
                            0x04, 0xDC, 0x00, 0x00));                   // ObjectSize
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication getObjectPropValue:propCode:objectPropValue:",
                         "getObjectPropValue (result = success, objHdr = <0a000100>, propVal = "
                         "4294967296)"}));
}

TEST_F(Operations, LogsAPropertyValueOfZeroWhenThereIsNone)
{
    answerData(0x9803, {1, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(engine.getObjectPropValue(handle, 0xDC04, nullptr));
    EXPECT_THAT(log.last().message, HasSubstr("propVal = 0)"));
}

TEST_F(Operations, PassesARangeErrorOfThePropertyParserOn)
{
    answerData(0x9803, {0, 0, 0, 0, 1, 0, 0});  // 7 of 8 bytes
    ObjectPropValueObjectSize size;
    EXPECT_THROW(engine.getObjectPropValue(handle, 0xDC04, &size), RangeError);
    EXPECT_TRUE(isLockFree());
}

TEST_F(Operations, ReadsObjectInfo)
{
    answerData(0x1008, objectInfo("A.JPG"));
    std::shared_ptr<ObjectInfoData> info;
    EXPECT_TRUE(engine.getObjectInfo(handle, &info));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->objectFormat(), 0x3801);
    EXPECT_EQ(info->objectCompressedSize(), 1000U);
    EXPECT_THAT(lastCommand(),
                ElementsAre(16, 0, 0, 0, 1, 0, 0x08, 0x10, 0, 0, 0, 0,  //
                            0x0A, 0x00, 0x01, 0x00));                   // handle
    EXPECT_EQ(log.last().event, "PTPCommunication getObjectInfo:objectInfoData:");
    // The name goes to the log as decoded, its terminator included.
    EXPECT_EQ(log.last().message,
              std::string("getObjectInfo (result = success, objHdr = "
                          "<0a000100>, fileName = A.JPG")
                  + '\0' + ")");
}

TEST_F(Operations, AFileNameForgesNoRecordInTheLog)
{
    answerData(0x1008, objectInfo("A\n</log>\n<log time=\"2099-01-01T00:00:00Z\">"));
    std::shared_ptr<ObjectInfoData> object;
    EXPECT_TRUE(engine.getObjectInfo(handle, &object));
    EXPECT_THAT(
        log.last().message,
        HasSubstr("fileName = A\u240A</log>\u240A\u2039log time=\"2099-01-01T00:00:00Z\">"));
    // What the program reads back when it chooses a file is still the time of a true record.
    const auto time = log.logger().getLastLogTime(log.logger().targetLogName());
    ASSERT_TRUE(time.has_value());
    EXPECT_LT(*time, std::chrono::sys_days(std::chrono::year(2099) / 1 / 1));
    EXPECT_GT(*time, std::chrono::sys_days(std::chrono::year(2020) / 1 / 1));
}

TEST_F(Operations, FailsOnAnObjectInfoThatIsCutShort)
{
    ByteBuffer cut = objectInfo("A.JPG");
    cut.resize(50);
    answerData(0x1008, cut);
    std::shared_ptr<ObjectInfoData> info;
    EXPECT_FALSE(engine.getObjectInfo(handle, &info));
    EXPECT_TRUE(info);
    EXPECT_THAT(log.last().message, HasSubstr("getObjectInfo (result = fail"));
}

TEST_F(Operations, MakesNoRecordWithoutAPlaceForIt)
{
    answerData(0x1008, objectInfo("A.JPG"));
    EXPECT_TRUE(engine.getObjectInfo(handle, nullptr));
    EXPECT_EQ(log.last().message,
              "getObjectInfo (result = success, objHdr = <0a000100>, fileName = (null))");
}

TEST_F(Operations, FetchesAnObjectWithoutItsHeader)
{
    answerData(0x1009, {1, 2, 3});
    ByteBuffer bytes;
    EXPECT_TRUE(engine.getObject(handle, 3, &bytes, nullptr));
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3));
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication getObject:objectSize:objectBinaryData:callback:",
                         "getObject (result = success, objHdr = <0a000100>)"}));
}

TEST_F(Operations, FetchesAnObjectOfUnknownSize)
{
    answerData(0x1009, {1, 2, 3});
    ByteBuffer bytes;
    EXPECT_TRUE(engine.getObject(handle, 0, &bytes, nullptr));
    EXPECT_EQ(bytes.size(), 3U);
}

TEST_F(Operations, RefusesAnEmptyObjectOnTheConsole)
{
    answerData(0x1009, {});
    ByteBuffer bytes{9};
    testing::internal::CaptureStderr();
    EXPECT_FALSE(engine.getObject(handle, 0, &bytes, nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Oh!!! receiveBuffer is length 12 (< 13.)\n");
    EXPECT_THAT(bytes, ElementsAre(9));
    EXPECT_EQ(log.last().message, "getObject (result = fail, objHdr = <0a000100>)");
}

TEST_F(Operations, TakesTheEnginesResultForAnObjectThatNobodyWants)
{
    answerData(0x1009, {});
    EXPECT_TRUE(engine.getObject(handle, 0, nullptr, nullptr));
}

TEST_F(Operations, LeavesTheBytesAloneWhenThereIsASink)
{
    answerData(0x1009, {1, 2, 3});
    GetObjectCallback sink(nullptr, nullptr);
    ByteBuffer bytes{9};
    EXPECT_TRUE(engine.getObject(handle, 3, &bytes, &sink));
    EXPECT_THAT(bytes, ElementsAre(9));
    EXPECT_EQ(sink.lastRecvdDataSize(), 15U);
}

TEST_F(Operations, ExpectsHeaderAndObjectOfAContainerOfUnknownLength)
{
    pipes().answerWrite(
        1, {container(2, 0x1009, 1, ByteBuffer(6000, 7), 0xFFFFFFFF), response(0x2001)});
    ByteBuffer bytes;
    EXPECT_TRUE(engine.getObject(handle, 6000, &bytes, nullptr));
    EXPECT_EQ(bytes.size(), 6000U);
}

TEST_F(Operations, FetchesAThumbnail)
{
    answerData(0x100A, {0xFF, 0xD8});
    ByteBuffer bytes;
    EXPECT_TRUE(engine.getThumb(handle, 2, &bytes));
    EXPECT_THAT(bytes, ElementsAre(0xFF, 0xD8));
    EXPECT_THAT(lastCommand(),
                ElementsAre(16, 0, 0, 0, 1, 0, 0x0A, 0x10, 0, 0, 0, 0,  //
                            0x0A, 0x00, 0x01, 0x00));                   // handle
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication getThumb:objectSize:objectBinaryData:",
                         "getThumb (result = success, objHdr = <0a000100>)"}));
}

TEST_F(Operations, RefusesAnEmptyThumbnailOnTheConsole)
{
    answerData(0x100A, {});
    ByteBuffer bytes;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(engine.getThumb(handle, 0, &bytes));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Oh!!! receiveBuffer is length 12 (< 13.)\n");
}

TEST_F(Operations, DeletesAnObject)
{
    answer(0x2001);
    EXPECT_TRUE(engine.deleteObject(handle));
    EXPECT_THAT(lastCommand(),
                ElementsAre(20, 0, 0, 0, 1, 0, 0x0B, 0x10, 0, 0, 0, 0,  //
                            0x0A, 0x00, 0x01, 0x00,                     // handle
                            0, 0, 0, 0));                               // all formats
    EXPECT_EQ(log.last(),
              (LogRecord{"PTPCommunication deleteObject:",
                         "deleteObject (result = success, responseCode = 8193, objHdr = "
                         "<0a000100>)"}));
}

TEST_F(Operations, FailsToDeleteAProtectedObject)
{
    answer(0x200D);
    EXPECT_FALSE(engine.deleteObject(handle));
    EXPECT_EQ(log.last().message,
              "deleteObject (result = fail, responseCode = 8205, objHdr = <0a000100>)");
    EXPECT_EQ(engine.lastTransactionFailure().toText(),
              "the camera refused: Object WriteProtected (0x200D)");
}

TEST_F(Operations, LogsResponseCodeZeroWhenNoneArrived)
{
    pipes().answer({.bytes = {}, .result = UsbResult::NoDevice, .afterWrites = 1});
    EXPECT_FALSE(engine.deleteObject(handle));
    EXPECT_THAT(log.last().message, HasSubstr("responseCode = 0,"));
}

TEST_F(Operations, AreExclusiveBetweenThreads)
{
    // Two threads, one pipe: were their transactions interleaved, handles would be mixed up.
    constexpr int rounds = 50;
    pipes().silence = std::chrono::milliseconds(500);
    for (unsigned i = 1; i <= 2 * rounds; ++i)
        pipes().answerWrite(i, {data(0x1009, {static_cast<std::uint8_t>(i)}), response(0x2001)});
    const auto work = [this] {
        int good = 0;
        for (int i = 0; i < rounds; ++i) {
            ByteBuffer bytes;
            good += engine.getObject(handle, 1, &bytes, nullptr) && bytes.size() == 1 ? 1 : 0;
        }
        return good;
    };
    std::future<int> other = std::async(std::launch::async, work);
    EXPECT_EQ(work(), rounds);
    EXPECT_EQ(other.get(), rounds);
    EXPECT_EQ(engine.transactionID(), 1U + 2 * rounds);
}

}  // namespace
