// What a read of the bulk-in pipe sees, through the real libusb.
#include "usb/BulkInQueue.h"
#include "support/ConnectedCamera.h"
#include "usb/LibusbInterface.h"

namespace nivor {
namespace {

using namespace test;

class BulkInQueueTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(camera_.open(), UsbResult::Success); }

    ConnectedCamera camera_;
};

TEST_F(BulkInQueueTest, KeepsNearlyTwoMegabytesInFlightFromTheStart)
{
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 15U);
    EXPECT_EQ(camera_.camera.usbfs().counters().bytesInFlight, 15U * 128 * 1024);
}

TEST_F(BulkInQueueTest, EachWriteIsFollowedByAFreshTransfer)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 15U);
        EXPECT_EQ(camera_.interface->writePipe(numberedBytes(16)), UsbResult::Success);
        EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 16U);
        camera_.camera.send(numberedBytes(12));
        EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
    }
}

TEST_F(BulkInQueueTest, WritesWithoutAnAnswerAddOneTransferAtMost)
{
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(camera_.interface->writePipe(numberedBytes(16)), UsbResult::Success);
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 17U);
    for (int i = 0; i < 2; ++i) {
        camera_.camera.send(numberedBytes(12));
        EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
    }
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 15U);
}

TEST_F(BulkInQueueTest, AWriteAfterDataThatBrokeOffIsFollowedByAFreshTransferToo)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(camera_.interface->writePipe(numberedBytes(16)), UsbResult::Success);
        camera_.camera.send(numberedBytes(128 * 1024), WireEnd::Open);
        EXPECT_EQ(camera_.read(128 * 1024).bytes.size(), 128U * 1024);
        EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 16U);
    }
    EXPECT_EQ(camera_.interface->writePipe(numberedBytes(16)), UsbResult::Success);
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 17U);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

/// A data container that announces its own length.
ByteBuffer containerOf(std::size_t length)
{
    ByteBuffer bytes = numberedBytes(length);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(length >> (8 * i));
    return bytes;
}

class WholePacketsTest : public BulkInQueueTest,
                         public testing::WithParamInterface<std::size_t> { };

TEST_P(WholePacketsTest, AContainerEndsItsReadWithoutAnEmptyPacket)
{
    const ByteBuffer container = containerOf(GetParam());
    camera_.camera.send(container, WireEnd::Open);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(GetParam() + 5120), (ReadResult{UsbResult::Success, container}));
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, numberedBytes(12)}));
}

TEST_P(WholePacketsTest, AnEmptyPacketBehindAContainerIsItsEnd)
{
    const ByteBuffer container = containerOf(GetParam());
    camera_.camera.send(container, WireEnd::Marked);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(GetParam() + 5120), (ReadResult{UsbResult::Success, container}));
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, numberedBytes(12)}));
}

// One packet; several; all of a transfer; more than one; all of the ring.
INSTANTIATE_TEST_SUITE_P(Lengths, WholePacketsTest,
                         testing::Values(512, 5120, 128 * 1024, 130 * 1024, 2 * 1024 * 1024));

TEST_F(BulkInQueueTest, AShortPacketEndsARead)
{
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, numberedBytes(12)}));
}

TEST_F(BulkInQueueTest, EachShortPacketEndsAReadOfItsOwn)
{
    camera_.camera.send(numberedBytes(600));
    camera_.camera.send(numberedBytes(12, 50));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(600));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12, 50));
}

TEST_F(BulkInQueueTest, AnEmptyPacketIsASuccessWithoutBytes)
{
    camera_.camera.send({});
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, {}}));
}

TEST_F(BulkInQueueTest, AnEmptyPacketEndsWholePackets)
{
    camera_.camera.send(numberedBytes(1024));
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(1024));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

TEST_F(BulkInQueueTest, AnEndThatFallsOnAFullBufferBelongsToThatRead)
{
    camera_.camera.send(numberedBytes(5120));
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(5120));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

TEST_F(BulkInQueueTest, SoDoesAnEmptyPacketInATransferOfItsOwn)
{
    // The bytes fill one transfer of the ring, so that the empty packet needs the next.
    camera_.camera.send(numberedBytes(128 * 1024));
    EXPECT_EQ(camera_.read(128 * 1024).bytes, numberedBytes(128 * 1024));
    EXPECT_EQ(camera_.read(5120, 50ms).result, UsbResult::TransactionTimeout);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

TEST_F(BulkInQueueTest, ALongerBufferSeesThatEmptyPacketAsItsEnd)
{
    camera_.camera.send(numberedBytes(128 * 1024));
    EXPECT_EQ(camera_.read(256 * 1024).bytes, numberedBytes(128 * 1024));
}

TEST_F(BulkInQueueTest, AReadMaySpanManyTransfersOfTheRing)
{
    const ByteBuffer object = numberedBytes(9'000'001);
    camera_.camera.send(object);
    EXPECT_EQ(camera_.read(16 * 1024 * 1024).bytes, object);
}

TEST_F(BulkInQueueTest, TheWireGoesOnWhileTheReaderIsBusy)
{
    constexpr std::size_t transferSize = std::size_t{128} * 1024;
    constexpr std::size_t mostUnread = BulkInQueue::mostUnread / transferSize;
    const ByteBuffer object = numberedBytes(12 * 1024 * 1024 + 100);
    const auto submissions = [this] { return camera_.camera.usbfs().counters().submissions; };
    camera_.camera.send(object);
    ByteBuffer all = camera_.read(5120).bytes;
    for (int i = 0; i < 1000 && submissions() < mostUnread; ++i)
        std::this_thread::sleep_for(5ms);
    // Were the wire to go on without end, it would now.
    std::this_thread::sleep_for(50ms);
    EXPECT_GE(submissions(), mostUnread);
    EXPECT_LE(submissions(), mostUnread + 1);

    while (all.size() < object.size()) {
        const ReadResult next = camera_.read(1024 * 1024);
        ASSERT_EQ(next.result, UsbResult::Success);
        all.insert(all.end(), next.bytes.begin(), next.bytes.end());
    }
    EXPECT_EQ(all, object);
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 15U);
    EXPECT_LE(camera_.camera.usbfs().counters().mostBytesInFlight, 16 * transferSize);
}

TEST_F(BulkInQueueTest, TouchesNothingBehindTheBytesReceived)
{
    camera_.camera.send(numberedBytes(12));
    ByteBuffer buffer(5120, 0xEE);
    std::size_t received = 0;
    ASSERT_EQ(camera_.interface->readPipe(buffer, received, {1s, 1s}), UsbResult::Success);
    ASSERT_EQ(received, 12U);
    EXPECT_TRUE(std::all_of(buffer.begin() + 12, buffer.end(), [](auto b) { return b == 0xEE; }));
}

TEST_F(BulkInQueueTest, AnEmptyBufferIsReadAtOnce)
{
    EXPECT_EQ(camera_.read(0), (ReadResult{UsbResult::Success, {}}));
}

TEST_F(BulkInQueueTest, NothingInTimeIsATimeoutAfterTheNoDataTime)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera_.read(5120, 60ms, 10s), (ReadResult{UsbResult::TransactionTimeout, {}}));
    const auto lasted = std::chrono::steady_clock::now() - start;
    EXPECT_GE(lasted, 60ms);
    EXPECT_LT(lasted, 5s);
}

TEST_F(BulkInQueueTest, TheCompletionTimeBoundsTheReadToo)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera_.read(5120, 10s, 60ms).result, UsbResult::TransactionTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(BulkInQueueTest, ATimeoutWithSomeBytesIsASuccessAndLosesNothing)
{
    const ByteBuffer object = numberedBytes(300 * 1024);
    camera_.camera.send({object.begin(), object.begin() + 200 * 1024}, WireEnd::Open);
    ReadResult first = camera_.read(1024 * 1024, 1500ms);
    EXPECT_EQ(first.result, UsbResult::Success);
    // One transfer of the ring has finished; the other is half full.
    EXPECT_EQ(first.bytes.size(), 128U * 1024);
    EXPECT_EQ(camera_.read(1024 * 1024, 50ms).result, UsbResult::TransactionTimeout);
    camera_.camera.send({object.begin() + 200 * 1024, object.end()});
    const ReadResult second = camera_.read(1024 * 1024);
    first.bytes.insert(first.bytes.end(), second.bytes.begin(), second.bytes.end());
    EXPECT_EQ(first.bytes, object);
    EXPECT_EQ(camera_.camera.usbfs().counters().discards, 0U);
}

TEST_F(BulkInQueueTest, ProgressRenewsTheNoDataTime)
{
    std::jthread sender([this] {
        for (int i = 0; i < 4; ++i) {
            std::this_thread::sleep_for(700ms);
            camera_.camera.send(numberedBytes(128 * 1024), WireEnd::Open);
        }
    });
    EXPECT_EQ(camera_.read(512 * 1024, 2s, 20s).bytes.size(), 512U * 1024);
}

TEST_F(BulkInQueueTest, AWaitingReadWakesAsSoonAsBytesCome)
{
    std::jthread sender([this] {
        std::this_thread::sleep_for(50ms);
        camera_.camera.send(numberedBytes(12));
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera_.read(5120, 20s, 20s).bytes, numberedBytes(12));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(BulkInQueueTest, ControlRequestsPassWhileAReadWaits)
{
    camera_.camera.onControl([](const MockedSetup& setup, ByteView) {
        return setup.bRequest == 0x67 ? std::optional(deviceStatusBlock(0x2019)) : std::nullopt;
    });
    std::jthread reader([this] { EXPECT_EQ(camera_.read(5120, 10s, 10s).bytes.size(), 12U); });
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(camera_.deviceStatus(), UsbResult::Success);
    EXPECT_EQ(camera_.transferred, 4U);
    camera_.camera.send(numberedBytes(12));
}

}  // namespace
}  // namespace nivor
