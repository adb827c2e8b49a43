#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

namespace nivor::test {

using testing::ElementsAre;
using testing::IsEmpty;

class PtpResponderTest : public testing::Test {
protected:
    PtpResponderTest()
    {
        folder = card->addFolder(u"DCIM");
        inner = card->addFolder(u"100NIVOR", folder);
        picture = card->addFile(u"A.JPG", 1000, inner);
        film = card->addFile(u"B.MOV", 3000, inner);
        rootFile = card->addFile(u"C.TXT", 5);
    }

    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::uint32_t folder, inner, picture, film, rootFile;
    SimulatorHost host{card};
};

TEST_F(PtpResponderTest, OpensAndClosesASession)
{
    host.openSession();
    EXPECT_TRUE(host.camera->hasOpenSession());
    EXPECT_TRUE(host.respond(OperationCode::CloseSession).isResponse());
    EXPECT_FALSE(host.camera->hasOpenSession());
    EXPECT_EQ(host.camera->record().sessionsOpened, 1U);
}

TEST_F(PtpResponderTest, NamesTheOpenSessionWhenASecondOneIsOpened)
{
    host.openSession();
    const Received response = host.respond(OperationCode::OpenSession, {2});
    EXPECT_TRUE(response.isResponse(ResponseCode::SessionAlreadyOpen));
    EXPECT_EQ(response.parameter(0), 1U);
}

TEST_F(PtpResponderTest, RefusesSessionZero)
{
    EXPECT_TRUE(
        host.respond(OperationCode::OpenSession, {0}).isResponse(ResponseCode::InvalidParameter));
}

TEST_F(PtpResponderTest, RefusesObjectOperationsWithoutSession)
{
    EXPECT_TRUE(
        host.respond(OperationCode::GetStorageIDs).isResponse(ResponseCode::SessionNotOpen));
}

TEST_F(PtpResponderTest, TellsItsDeviceInfoWithoutSession)
{
    const ByteBuffer info = host.fetch(OperationCode::GetDeviceInfo);
    ByteReader reader(info);
    EXPECT_EQ(reader.u16(), 100);  // StandardVersion
    EXPECT_EQ(reader.u32(), 6U);   // VendorExtensionID
}

TEST_F(PtpResponderTest, RefusesAnUnknownOperation)
{
    host.openSession();
    EXPECT_TRUE(host.respond(static_cast<OperationCode>(0x9999))
                    .isResponse(ResponseCode::OperationNotSupported));
}

TEST_F(PtpResponderTest, RefusesTransactionIDsThatTheStandardReserves)
{
    host.openSession();
    host.interface->writePipe(container(12, 1, 0x1004, 0));
    EXPECT_TRUE(host.read().isResponse(ResponseCode::InvalidTransactionID));
    host.interface->writePipe(container(12, 1, 0x1004, 0xFFFFFFFF));
    EXPECT_TRUE(host.read().isResponse(ResponseCode::InvalidTransactionID));
}

TEST_F(PtpResponderTest, AnswersWithTheCommandsTransactionID)
{
    host.openSession();
    host.transactionID = 0x12345677;
    ASSERT_EQ(host.send(OperationCode::GetStorageIDs), UsbResult::Success);
    EXPECT_THAT(host.read().bytes,
                ElementsAre(20, 0, 0, 0,             // length
                            2, 0,                    // type: data
                            0x04, 0x10,              // GetStorageIDs
                            0x78, 0x56, 0x34, 0x12,  // transaction ID
                            1, 0, 0, 0,              // count
                            1, 0, 1, 0));            // StorageID
    EXPECT_THAT(host.read().bytes,
                ElementsAre(12, 0, 0, 0,               // length
                            3, 0,                      // type: response
                            0x01, 0x20,                // OK
                            0x78, 0x56, 0x34, 0x12));  // transaction ID
}

TEST_F(PtpResponderTest, TellsItsStorageInfo)
{
    host.openSession();
    const ByteBuffer info = host.fetch(OperationCode::GetStorageInfo, {storage});
    ByteReader reader(info);
    reader.skip(4);
    EXPECT_EQ(reader.u16(), 0);                        // AccessCapability: read and write
    EXPECT_EQ(reader.u64(), card->capacity());         // MaxCapacity
    EXPECT_EQ(reader.u64(), card->capacity() - 4005);  // FreeSpaceInBytes
    EXPECT_TRUE(host.respond(OperationCode::GetStorageInfo, {7})
                    .isResponse(ResponseCode::InvalidStorageID));
}

TEST_F(PtpResponderTest, ListsAllObjectsForAssociationZero)
{
    host.openSession();
    EXPECT_THAT(host.handles(), ElementsAre(folder, inner, picture, film, rootFile));
}

TEST_F(PtpResponderTest, ListsTheRootForAssociationAllOnes)
{
    host.openSession();
    EXPECT_THAT(host.handles(0, 0xFFFFFFFF), ElementsAre(folder, rootFile));
}

TEST_F(PtpResponderTest, ListsAFoldersChildren)
{
    host.openSession();
    EXPECT_THAT(host.handles(0, inner), ElementsAre(picture, film));
}

TEST_F(PtpResponderTest, ListsOneFormatOnly)
{
    host.openSession();
    EXPECT_THAT(host.handles(0x300D), ElementsAre(film));
    EXPECT_THAT(host.handles(0x3809), IsEmpty());
}

TEST_F(PtpResponderTest, CountsObjects)
{
    host.openSession();
    const Received response = host.respond(OperationCode::GetNumObjects, {storage, 0, 0});
    EXPECT_TRUE(response.isResponse());
    EXPECT_EQ(response.parameter(0), 5U);
}

TEST_F(PtpResponderTest, RefusesListingsOfWhatIsNotThere)
{
    host.openSession();
    const auto refusal = [&](std::uint32_t storageID, std::uint32_t association) {
        return host.respond(OperationCode::GetObjectHandles, {storageID, 0, association}).code();
    };
    EXPECT_EQ(refusal(99, 0), 0x2008);             // InvalidStorageID
    EXPECT_EQ(refusal(storage, 999), 0x2009);      // InvalidObjectHandle
    EXPECT_EQ(refusal(storage, picture), 0x201A);  // InvalidParentObject
}

TEST_F(PtpResponderTest, RefusesHandlesThatDoNotExist)
{
    host.openSession();
    for (const auto operation :
         {OperationCode::GetObjectInfo, OperationCode::GetObject, OperationCode::GetThumb,
          OperationCode::DeleteObject, OperationCode::GetObjectPropValue})
        EXPECT_TRUE(host.respond(operation, {999}).isResponse(ResponseCode::InvalidObjectHandle));
}

TEST_F(PtpResponderTest, SendsAnObjectInfoFieldByField)
{
    CardObject object{.handle = 0x77, .parent = inner, .name = u"é"};
    object.format = ObjectFormatCode::EXIFJPEG;
    object.captureDate = u"A";
    object.imageWidth = 0x0400;
    object.imageHeight = 0x0200;
    object.isProtected = true;
    card->add(object, ByteBuffer{1, 2, 3});
    card->setThumbnail(0x77, ByteBuffer(5));
    host.openSession();
    EXPECT_THAT(host.fetch(OperationCode::GetObjectInfo, {0x77}),
                ElementsAre(1, 0, 1, 0,                                 // StorageID
                            0x01, 0x38,                                 // ObjectFormat
                            1, 0,                                       // ProtectionStatus
                            3, 0, 0, 0,                                 // ObjectCompressedSize
                            0x08, 0x38,                                 // ThumbFormat
                            5, 0, 0, 0,                                 // ThumbCompressedSize
                            0, 0, 0, 0, 0, 0, 0, 0,                     // ThumbPixWidth, -Height
                            0, 4, 0, 0, 0, 2, 0, 0,                     // ImagePixWidth, -Height
                            24, 0, 0, 0,                                // ImageBitDepth
                            static_cast<std::uint8_t>(inner), 0, 0, 0,  // ParentObject
                            0, 0, 0, 0, 0, 0,                           // AssociationType, -Desc
                            0, 0, 0, 0,                                 // SequenceNumber
                            2, 0xE9, 0x00, 0, 0,                        // Filename "é"
                            2, 'A', 0, 0, 0,                            // CaptureDate
                            0,                                          // ModificationDate
                            0));                                        // Keywords
}

TEST_F(PtpResponderTest, SendsNamesOf254UnitsWhole)
{
    const std::u16string name(254, u'\x3042');
    const std::uint32_t handle = card->addFile(name, 1);
    const std::uint32_t longer = card->addFile(name + u"\x3044", 1);
    host.openSession();
    const ByteBuffer info = host.fetch(OperationCode::GetObjectInfo, {handle});
    EXPECT_EQ(info.at(52), 255);             // units with terminator
    EXPECT_EQ(info.at(52 + 2 * 254), 0x30);  // the last unit's upper byte
    EXPECT_EQ(host.fetch(OperationCode::GetObjectInfo, {longer}), info);
}

TEST_F(PtpResponderTest, SaysAllOnesForSizesThatNeedMoreThan32Bits)
{
    const auto sizeSent = [&](std::uint64_t size) {
        const std::uint32_t handle = card->addFile(u"X.MOV", size);
        const ByteBuffer info = host.fetch(OperationCode::GetObjectInfo, {handle});
        return ByteReader(info, 8).u32();
    };
    host.openSession();
    EXPECT_EQ(sizeSent(0xFFFFFFFE), 0xFFFFFFFEU);
    EXPECT_EQ(sizeSent(0xFFFFFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(sizeSent(0x100000000), 0xFFFFFFFFU);
}

TEST_F(PtpResponderTest, TellsTheSizeIn64Bits)
{
    const std::uint32_t handle = card->addFile(u"X.MOV", 0x123456789A);
    host.openSession();
    EXPECT_THAT(host.fetch(OperationCode::GetObjectPropValue, {handle, 0xDC04}),
                ElementsAre(0x9A, 0x78, 0x56, 0x34, 0x12, 0, 0, 0));
    EXPECT_TRUE(host.respond(OperationCode::GetObjectPropValue, {handle, 0xDC07})
                    .isResponse(ResponseCode::InvalidObjectPropCode));
}

TEST_F(PtpResponderTest, SendsThumbnails)
{
    card->setThumbnail(picture, {9, 8, 7});
    host.openSession();
    EXPECT_THAT(host.fetch(OperationCode::GetThumb, {picture}), ElementsAre(9, 8, 7));
    EXPECT_TRUE(
        host.respond(OperationCode::GetThumb, {film}).isResponse(ResponseCode::NoThumbnailPresent));
}

TEST_F(PtpResponderTest, RefusesTheContentOfAFolder)
{
    host.openSession();
    EXPECT_TRUE(host.respond(OperationCode::GetObject, {folder})
                    .isResponse(ResponseCode::InvalidObjectHandle));
}

TEST_F(PtpResponderTest, DeletesAnObject)
{
    host.openSession();
    EXPECT_TRUE(host.respond(OperationCode::DeleteObject, {picture, 0}).isResponse());
    EXPECT_THAT(host.handles(), ElementsAre(folder, inner, film, rootFile));
}

TEST_F(PtpResponderTest, RefusesDeletionsThatAreNotAllowed)
{
    CardObject object{.name = u"P.JPG"};
    object.isProtected = true;
    const std::uint32_t guarded = card->add(object, ByteBuffer{1});
    host.openSession();
    const auto code = [&](std::uint32_t handle, std::uint32_t format = 0) {
        return host.respond(OperationCode::DeleteObject, {handle, format}).code();
    };
    EXPECT_EQ(code(guarded), 0x200D);          // ObjectWriteProtected
    EXPECT_EQ(code(inner), 0x200F);            // AccessDenied: it is not empty
    EXPECT_EQ(code(0xFFFFFFFF), 0x2006);       // ParameterNotSupported
    EXPECT_EQ(code(picture, 0x3801), 0x2014);  // SpecificationByFormatUnsupported
    card->setReadOnly(true);
    EXPECT_EQ(code(picture), 0x200E);  // StoreReadOnly
    EXPECT_EQ(host.handles().size(), 6U);
}

TEST_F(PtpResponderTest, RefusesAnObjectThatCannotBeRead)
{
    card->setUnreadable(picture);
    host.openSession();
    EXPECT_TRUE(
        host.respond(OperationCode::GetObject, {picture}).isResponse(ResponseCode::AccessDenied));
}

TEST_F(PtpResponderTest, EndsTheDataAndSaysSoWhenReadingFailsOnTheWay)
{
    const std::uint32_t handle = card->addFile(u"X.MOV", 1 << 20);
    host.openSession();
    ASSERT_EQ(host.send(OperationCode::GetObject, {handle}), UsbResult::Success);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
    card->setUnreadable(handle);
    EXPECT_EQ(host.read(5120).bytes.size(), 0U);
    EXPECT_TRUE(host.read().isResponse(ResponseCode::IncompleteTransfer));
}

}  // namespace nivor::test
