#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

namespace nivor::test {

using namespace std::chrono_literals;
using testing::ElementsAre;

class FaultTest : public testing::Test {
protected:
    FaultTest() { host.openSession(); }

    /// Gives the next GetObject of the 100 byte file this fault and sends the command.
    void getWith(fault::Effect effect)
    {
        host.camera->setFaults(
            FaultPlan().on(OperationCode::GetObject, std::move(effect), Occurrences::nth(1)));
        ASSERT_EQ(host.send(OperationCode::GetObject, {file}), UsbResult::Success);
    }

    void expectSilence()
    {
        EXPECT_EQ(host.read(5120, brief).result, UsbResult::TransactionTimeout);
    }

    void expectHealth() { EXPECT_EQ(host.fetch(OperationCode::GetObject, {file}).size(), 100U); }

    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::uint32_t file = card->addFile(u"A.JPG", 100);
    SimulatorHost host{card};
};

TEST_F(FaultTest, RefusesInsteadOfData)
{
    getWith(fault::Refuse{ResponseCode::DeviceBusy});
    EXPECT_TRUE(host.read().isResponse(ResponseCode::DeviceBusy));
    expectHealth();
}

TEST_F(FaultTest, RefusesBeforeTheData)
{
    getWith(fault::Refuse{ResponseCode::GeneralError, fault::Refuse::Place::BeforeData});
    EXPECT_TRUE(host.read().isResponse(ResponseCode::GeneralError));
    EXPECT_EQ(host.read().payload().size(), 100U);
    expectHealth();
}

TEST_F(FaultTest, RefusesAfterTheData)
{
    getWith(fault::Refuse{ResponseCode::IncompleteTransfer, fault::Refuse::Place::AfterData});
    EXPECT_EQ(host.read().payload().size(), 100U);
    EXPECT_TRUE(host.read().isResponse(ResponseCode::IncompleteTransfer));
    expectHealth();
}

TEST_F(FaultTest, StallsOnce)
{
    getWith(fault::Stall{});
    EXPECT_EQ(host.read().result, UsbResult::PipeStalled);
    expectHealth();
}

TEST_F(FaultTest, StallsForeverUntilItIsAttachedAnew)
{
    getWith(fault::Stall{.forever = true});
    EXPECT_EQ(host.read().result, UsbResult::PipeStalled);
    ASSERT_EQ(host.send(OperationCode::GetStorageIDs), UsbResult::Success);
    EXPECT_EQ(host.read().result, UsbResult::PipeStalled);
    host.usb.detach(host.camera);
    host.attach();
    host.openSession();
    expectHealth();
}

TEST_F(FaultTest, GoesSilent)
{
    getWith(fault::Silence{});
    expectSilence();
    expectHealth();
}

TEST_F(FaultTest, AnswersLate)
{
    getWith(fault::Delay{2000ms});
    EXPECT_EQ(host.read(5120, {20ms, 20ms}).result, UsbResult::TransactionTimeout);
    EXPECT_EQ(host.read().payload().size(), 100U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, CutsTheDataShort)
{
    getWith(fault::CutData{.bytes = 50});
    const Received cut = host.read();
    EXPECT_EQ(cut.length(), 112U);
    EXPECT_EQ(cut.bytes.size(), 50U);
    EXPECT_TRUE(host.read().isResponse());
    expectHealth();
}

TEST_F(FaultTest, CutsTheDataShortAndGoesSilent)
{
    getWith(fault::CutData{.bytes = 50, .thenSilence = true});
    EXPECT_EQ(host.read().bytes.size(), 50U);
    expectSilence();
    expectHealth();
}

TEST_F(FaultTest, GluesTheResponseToTheData)
{
    getWith(fault::GlueResponse{});
    const Received both = host.read();
    EXPECT_EQ(both.bytes.size(), 112U + 12U);
    EXPECT_EQ(both.length(), 112U);
    EXPECT_EQ(ByteReader(both.bytes, 112 + 6).u16(), 0x2001);
    expectSilence();
}

TEST_F(FaultTest, RepeatsTheResponse)
{
    getWith(fault::RepeatResponse{.times = 3});
    EXPECT_TRUE(host.read().isData());
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(host.read().isResponse());
    expectSilence();
}

TEST_F(FaultTest, LeavesTheResponseOut)
{
    getWith(fault::RepeatResponse{.times = 0});
    EXPECT_TRUE(host.read().isData());
    expectSilence();
}

TEST_F(FaultTest, PutsParametersIntoTheResponse)
{
    getWith(fault::ResponseParameters{{5, 6}});
    EXPECT_TRUE(host.read().isData());
    const Received response = host.read();
    EXPECT_EQ(response.length(), 20U);
    EXPECT_EQ(response.parameter(0), 5U);
    EXPECT_EQ(response.parameter(1), 6U);
}

TEST_F(FaultTest, SendsAnEventFirst)
{
    getWith(fault::EventFirst{EventCode::StoreRemoved});
    EXPECT_THAT(host.read().bytes,
                ElementsAre(12, 0, 0, 0,   // length
                            4, 0,          // type: event
                            0x05, 0x40,    // StoreRemoved
                            0, 0, 0, 0));  // no transaction
    EXPECT_TRUE(host.read().isData());
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, WritesAnotherLength)
{
    getWith(fault::ContainerLength{.value = 0xFFFFFFFF});
    EXPECT_EQ(host.read().length(), 0xFFFFFFFFU);
    EXPECT_EQ(host.read().length(), 12U);
    getWith(fault::ContainerLength{.value = 3, .container = ContainerType::Response});
    EXPECT_EQ(host.read().length(), 112U);
    EXPECT_EQ(host.read().length(), 3U);
}

TEST_F(FaultTest, WritesAnotherType)
{
    getWith(fault::ContainerKind{.value = 77});
    EXPECT_EQ(host.read().type(), 77U);
    EXPECT_TRUE(host.read().isResponse());
    getWith(fault::ContainerKind{.value = 9, .container = ContainerType::Response});
    EXPECT_TRUE(host.read().isData());
    EXPECT_EQ(host.read().type(), 9U);
}

TEST_F(FaultTest, WritesAnotherTransactionID)
{
    getWith(fault::TransactionID{.value = 0xABCD});
    EXPECT_EQ(host.read().transactionID(), 0xABCDU);
    EXPECT_EQ(host.read().transactionID(), 0xABCDU);
}

TEST_F(FaultTest, SplitsTheHeaderOverTwoTransfers)
{
    getWith(fault::SplitHeader{.bytes = 5});
    EXPECT_THAT(host.read().bytes, ElementsAre(112, 0, 0, 0, 2));
    EXPECT_EQ(host.read().bytes.size(), 107U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, LeavesTheDataOut)
{
    getWith(fault::MissingData{});
    EXPECT_TRUE(host.read().isResponse());
    expectHealth();
}

TEST_F(FaultTest, SendsTheDataTwice)
{
    getWith(fault::DoubledData{});
    EXPECT_EQ(host.read().bytes, host.read().bytes);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, AddsAnEmptyPacket)
{
    getWith(fault::ZeroPacket{fault::ZeroPacket::Error::Extra});
    EXPECT_EQ(host.read().bytes.size(), 112U);
    const Received empty = host.read();
    EXPECT_EQ(empty.result, UsbResult::Success);
    EXPECT_EQ(empty.bytes.size(), 0U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, LeavesTheEmptyPacketOutSoThatTheResponseFollowsInTheSameRead)
{
    file = card->addFile(u"B.JPG", 512 - 12);
    getWith(fault::ZeroPacket{fault::ZeroPacket::Error::Missing});
    EXPECT_EQ(host.read(5120).bytes.size(), 512U + 12U);
    getWith(fault::ZeroPacket{fault::ZeroPacket::Error::Missing});
    EXPECT_EQ(host.read(512).bytes.size(), 512U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(FaultTest, AnnouncesUntrueSizes)
{
    host.camera->setFaults(
        FaultPlan().on(OperationCode::GetObjectInfo,
                       fault::UntrueObjectInfo{.objectSize = 7, .thumbnailSize = 0x01020304}));
    const ByteBuffer info = host.fetch(OperationCode::GetObjectInfo, {file});
    EXPECT_EQ(ByteReader(info, 8).u32(), 7U);            // ObjectCompressedSize
    EXPECT_EQ(ByteReader(info, 14).u32(), 0x01020304U);  // ThumbCompressedSize
    expectHealth();
}

TEST_F(FaultTest, SendsAnyBytesInsteadOfTheAnswer)
{
    getWith(fault::RawAnswer{{{1, 2, 3}, {}, ByteBuffer(600, 9)}});
    EXPECT_THAT(host.read().bytes, ElementsAre(1, 2, 3));
    EXPECT_EQ(host.read().bytes.size(), 0U);
    EXPECT_EQ(host.read().bytes.size(), 600U);
    expectHealth();
}

TEST_F(FaultTest, VanishesOnACommand)
{
    getWith(fault::Vanish{});
    EXPECT_EQ(host.read().result, UsbResult::NoDevice);
    EXPECT_FALSE(host.usb.isAttached(host.camera));
    EXPECT_TRUE(host.usb.stillImageInterfaces().empty());
}

TEST_F(FaultTest, VanishesAmidTheData)
{
    file = card->addFile(u"B.MOV", 100'000);
    getWith(fault::Vanish{.afterBytes = 5120});
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
    const Received gone = host.read(5120);
    EXPECT_EQ(gone.result, UsbResult::NoDevice);
    EXPECT_EQ(gone.bytes.size(), 0U);
    EXPECT_FALSE(host.usb.isAttached(host.camera));
}

TEST_F(FaultTest, AnswersOKToADeletionAndKeepsTheObject)
{
    host.camera->setFaults(FaultPlan().on(OperationCode::DeleteObject, fault::KeepObject{}));
    EXPECT_TRUE(host.respond(OperationCode::DeleteObject, {file, 0}).isResponse());
    EXPECT_THAT(host.handles(), ElementsAre(file));
}

TEST_F(FaultTest, StrikesAnyOperationAtItsOccurrence)
{
    host.camera->setFaults(FaultPlan().onAny(fault::Refuse{}, Occurrences::nth(2)));
    EXPECT_EQ(host.handles().size(), 1U);
    EXPECT_TRUE(host.respond(OperationCode::GetStorageIDs).isResponse(ResponseCode::GeneralError));
    expectHealth();
}

TEST_F(FaultTest, ActsTogetherWithOthersOfTheSameCommand)
{
    host.camera->setFaults(FaultPlan()
                               .on(OperationCode::GetObject, fault::EventFirst{})
                               .on(OperationCode::GetObject, fault::GlueResponse{}));
    ASSERT_EQ(host.send(OperationCode::GetObject, {file}), UsbResult::Success);
    EXPECT_EQ(host.read().type(), 4U);
    EXPECT_EQ(host.read().bytes.size(), 124U);
}

}  // namespace nivor::test
