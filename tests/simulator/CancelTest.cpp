#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

#include <future>

namespace nivor::test {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class CancelTest : public testing::Test {
protected:
    CancelTest() { host.openSession(); }

    void startTransfer()
    {
        ASSERT_EQ(host.send(OperationCode::GetObject, {film}), UsbResult::Success);
        ASSERT_EQ(host.read(5120).bytes.size(), 5120U);
    }

    void expectSilence()
    {
        EXPECT_EQ(host.read(5120, brief).result, UsbResult::TransactionTimeout);
    }

    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::uint32_t film = card->addFile(u"A.MOV", std::uint64_t{1} << 40);
    SimulatorHost host{card};
};

const auto statusOK = ElementsAre(4, 0, 0x01, 0x20);    // length, OK
const auto statusBusy = ElementsAre(4, 0, 0x19, 0x20);  // length, DeviceBusy

TEST_F(CancelTest, StopsTheRunningTransactionWithoutResponse)
{
    startTransfer();
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_THAT(host.status(), statusOK);
    expectSilence();
    EXPECT_EQ(host.handles().size(), 1U);
    EXPECT_EQ(host.camera->record().cancelRequests, 1U);
    EXPECT_EQ(host.camera->record().statusRequests, 1U);
}

TEST_F(CancelTest, LeavesOtherTransactionsAlone)
{
    startTransfer();
    EXPECT_EQ(host.cancel(host.transactionID + 1), UsbResult::Success);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
}

TEST_F(CancelTest, StopsASilentTransaction)
{
    host.camera->setFaults(
        FaultPlan().on(OperationCode::GetStorageIDs, fault::Silence{}).cancel({.busyPolls = 1}));
    host.send(OperationCode::GetStorageIDs);
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_THAT(host.status(), statusBusy);
    EXPECT_THAT(host.status(), statusOK);
}

TEST_F(CancelTest, StopsFromAnotherThreadWhileAReadWaits)
{
    host.camera->setPace({.megabytesPerSecond = 1});
    startTransfer();
    const std::uint64_t sentBefore = host.camera->record().bytesSent;
    auto reading = std::async(std::launch::async, [&] {
        return host.read(std::size_t{1} << 20, {100ms, 5000ms});
    });
    while (host.camera->record().bytesSent == sentBefore
           && reading.wait_for(1ms) == std::future_status::timeout) { }
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    const Received part = reading.get();
    EXPECT_EQ(part.result, UsbResult::Success);
    EXPECT_LT(part.bytes.size(), std::size_t{1} << 20);
    host.camera->setPace({});
    EXPECT_EQ(host.handles().size(), 1U);
}

TEST_F(CancelTest, KeepsTheNextAnswerOutOfAReadThatHasAPart)
{
    host.camera->setPace({.megabytesPerSecond = 1});
    startTransfer();
    const std::uint64_t sentBefore = host.camera->record().bytesSent;
    auto reading =
        std::async(std::launch::async, [&] { return host.read(std::size_t{1} << 20, patient); });
    while (host.camera->record().bytesSent == sentBefore
           && reading.wait_for(1ms) == std::future_status::timeout) { }
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_THAT(host.status(), statusOK);
    ASSERT_EQ(host.send(OperationCode::GetStorageIDs), UsbResult::Success);
    const Received part = reading.get();
    EXPECT_EQ(part.result, UsbResult::Success);
    EXPECT_LT(part.bytes.size(), std::size_t{1} << 20);
    EXPECT_EQ(part.bytes.size() % 512, 0U) << "an answer's bytes behind the film's packets";
    EXPECT_TRUE(host.read().isData());
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(CancelTest, LeavesTheNextAnswerWholeToAReadThatHasNothing)
{
    const std::uint32_t picture = card->addFile(u"B.JPG", 20'000);
    host.camera->setFaults(
        FaultPlan().on(OperationCode::GetStorageIDs, fault::Silence{}, Occurrences::nth(1)));
    ASSERT_EQ(host.send(OperationCode::GetStorageIDs), UsbResult::Success);
    auto reading =
        std::async(std::launch::async, [&] { return host.read(std::size_t{1} << 20, patient); });
    EXPECT_EQ(reading.wait_for(50ms), std::future_status::timeout);
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_THAT(host.status(), statusOK);
    host.camera->setPace({.megabytesPerSecond = 1});
    ASSERT_EQ(host.send(OperationCode::GetObject, {picture}), UsbResult::Success);
    Received answer = reading.get();
    // On a slow machine it ends before the command comes.
    if (answer.result == UsbResult::TransactionTimeout)
        answer = host.read(std::size_t{1} << 20);
    EXPECT_EQ(answer.bytes.size(), 12U + 20'000);
}

TEST_F(CancelTest, StaysBusyForSomePolls)
{
    host.camera->setFaults(FaultPlan().cancel({.busyPolls = 2}));
    startTransfer();
    EXPECT_THAT(host.status(), statusOK);
    host.cancel(host.transactionID);
    EXPECT_THAT(host.status(), statusBusy);
    EXPECT_THAT(host.status(), statusBusy);
    EXPECT_THAT(host.status(), statusOK);
}

TEST_F(CancelTest, NeverSaysOKWhenToldSo)
{
    host.camera->setFaults(FaultPlan().cancel({.neverOK = true}));
    startTransfer();
    host.cancel(host.transactionID);
    for (int i = 0; i < 12; ++i)
        EXPECT_THAT(host.status(), statusBusy);
}

TEST_F(CancelTest, AnswersStatusWithNothing)
{
    host.camera->setFaults(FaultPlan().cancel({.emptyStatus = true}));
    EXPECT_THAT(host.status(), IsEmpty());
}

TEST_F(CancelTest, GoesOnWhenItIgnoresTheRequest)
{
    host.camera->setFaults(FaultPlan().cancel({.ignored = true}));
    startTransfer();
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
}

TEST_F(CancelTest, RespondsToTheStoppedTransactionWhenToldSo)
{
    host.camera->setFaults(FaultPlan().cancel({.response = ResponseCode::TransactionCancelled}));
    startTransfer();
    host.cancel(host.transactionID);
    const Received response = host.read();
    EXPECT_TRUE(response.isResponse(ResponseCode::TransactionCancelled));
    EXPECT_EQ(response.transactionID(), host.transactionID);
}

TEST_F(CancelTest, FailsControlRequestsWhenToldSo)
{
    host.camera->setFaults(
        FaultPlan()
            .usb(UsbStep::CancelRequest, UsbResult::TransactionTimeout, Occurrences::nth(1))
            .usb(UsbStep::GetDeviceStatus, UsbResult::PipeStalled, Occurrences::nth(1)));
    startTransfer();
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::TransactionTimeout);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
    EXPECT_THAT(host.status(UsbResult::PipeStalled), IsEmpty());
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    expectSilence();
}

TEST_F(CancelTest, StallsOnMalformedRequests)
{
    startTransfer();
    const auto result = [&](std::uint8_t type, std::uint8_t code, ByteBuffer data) {
        ControlRequest request{.bmRequestType = type, .bRequest = code, .data = data};
        return host.device->controlRequest(request);
    };
    EXPECT_EQ(result(0x21, 0x64, {1, 0x40, 2, 0, 0}), UsbResult::PipeStalled);     // too short
    EXPECT_EQ(result(0x21, 0x64, {2, 0x40, 2, 0, 0, 0}), UsbResult::PipeStalled);  // another code
    EXPECT_EQ(result(0xA1, 0x64, {1, 0x40, 2, 0, 0, 0}), UsbResult::PipeStalled);  // other way
    EXPECT_EQ(result(0xA1, 0x99, ByteBuffer(8)), UsbResult::PipeStalled);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
}

TEST_F(CancelTest, CutsTheStatusToTheRoomThatTheHostGives)
{
    ByteBuffer data(3, 0xEE);
    ControlRequest request{.bmRequestType = 0xA1, .bRequest = 0x67, .data = data};
    EXPECT_EQ(host.device->controlRequest(request), UsbResult::Success);
    EXPECT_EQ(request.transferred, 3U);
    EXPECT_THAT(data, ElementsAre(4, 0, 1));
}

TEST_F(CancelTest, ForgetsAllAtADeviceReset)
{
    startTransfer();
    ControlRequest request{.bmRequestType = 0x21, .bRequest = 0x66, .data = {}};
    EXPECT_EQ(host.device->controlRequest(request), UsbResult::Success);
    expectSilence();
    EXPECT_FALSE(host.camera->hasOpenSession());
    host.openSession();
}

TEST_F(CancelTest, AReadThatWaitsWhenTheCancelIsConfirmedEndsSoon)
{
    host.camera->setFaults(FaultPlan().on(OperationCode::GetStorageIDs, fault::Silence{}));
    ASSERT_EQ(host.send(OperationCode::GetStorageIDs), UsbResult::Success);
    constexpr UsbTimeouts minute{std::chrono::seconds(60), std::chrono::seconds(60)};
    auto reading = std::async(std::launch::async, [&] { return host.read(5120, minute); });
    EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
    EXPECT_THAT(host.status(), statusOK);
    ASSERT_EQ(reading.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(reading.get().result, UsbResult::TransactionTimeout);
    // From the next command on everything is waited for again.
    host.camera->setPace({.perTransaction = std::chrono::milliseconds(100)});
    EXPECT_TRUE(host.respond(OperationCode::CloseSession).isResponse());
}

}  // namespace nivor::test
