// Failed transfers and a kernel short of memory, through the real libusb.
#include "support/ConnectedCamera.h"
#include "usb/LibusbInterface.h"

#include <linux/ioctl.h>
#include <linux/usbdevice_fs.h>

#include <cerrno>
#include <thread>

namespace nivor {
namespace {

using namespace test;

class BulkInQueueFailureTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(camera_.open(), UsbResult::Success); }

    EmulatedUsbfs& usbfs() { return camera_.camera.usbfs(); }

    ConnectedCamera camera_;
};

TEST_F(BulkInQueueFailureTest, AStallIsToldOnceAndThenThePipeWorks)
{
    camera_.camera.failIn(EPIPE);
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::PipeStalled, {}}));
    EXPECT_EQ(usbfs().counters().clearedHalts, 0U);
    EXPECT_EQ(camera_.read(5120, 50ms).result, UsbResult::TransactionTimeout);
    EXPECT_EQ(usbfs().counters().clearedHalts, 1U);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, numberedBytes(12)}));
    EXPECT_EQ(usbfs().waitingForIn(), 15U);
}

TEST_F(BulkInQueueFailureTest, StallsCanFollowEachOther)
{
    for (int i = 0; i < 20; ++i) {
        camera_.camera.failIn(EPIPE);
        EXPECT_EQ(camera_.read(5120).result, UsbResult::PipeStalled);
        camera_.camera.send(numberedBytes(600));
        EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(600));
    }
    EXPECT_EQ(usbfs().counters().clearedHalts, 20U);
}

TEST_F(BulkInQueueFailureTest, BytesBeforeAStallComeFirst)
{
    camera_.camera.send(numberedBytes(1024), WireEnd::Open);
    camera_.camera.failIn(EPIPE);
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::Success, numberedBytes(1024)}));
    EXPECT_EQ(camera_.read(5120), (ReadResult{UsbResult::PipeStalled, {}}));
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

TEST_F(BulkInQueueFailureTest, BytesInFullTransfersBeforeAFailureComeFirst)
{
    const ByteBuffer object = numberedBytes(300 * 1024);
    camera_.camera.send(object, WireEnd::Open);
    camera_.camera.failIn(EPROTO);
    EXPECT_EQ(camera_.read(1024 * 1024).bytes, object);
    EXPECT_EQ(camera_.read(5120).result, UsbResult::IOError);
}

TEST_F(BulkInQueueFailureTest, AWireFailureIsToldOnceWithoutClearingAHalt)
{
    camera_.camera.failIn(EPROTO);
    EXPECT_EQ(camera_.read(5120).result, UsbResult::IOError);
    EXPECT_EQ(camera_.read(5120, 50ms).result, UsbResult::TransactionTimeout);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
    EXPECT_EQ(usbfs().counters().clearedHalts, 0U);
}

TEST_F(BulkInQueueFailureTest, TooMuchDataIsAnOverrun)
{
    camera_.camera.failIn(EOVERFLOW);
    EXPECT_EQ(camera_.read(5120).result, UsbResult::Overrun);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

TEST_F(BulkInQueueFailureTest, AWaitingReadEndsAtOnceOnAFailure)
{
    std::jthread sender([this] {
        std::this_thread::sleep_for(50ms);
        camera_.camera.failIn(EPIPE);
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera_.read(5120, 20s, 20s).result, UsbResult::PipeStalled);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(BulkInQueueFailureTest, WithoutMemoryForARestartTheReadSaysSoAndTheNextTriesAgain)
{
    camera_.camera.failIn(EPROTO);
    EXPECT_EQ(camera_.read(5120).result, UsbResult::IOError);
    ASSERT_TRUE(happens([this] { return usbfs().counters().bytesInFlight == 0; }));
    usbfs().setMemoryLimit(1024);
    EXPECT_EQ(camera_.read(5120).result, UsbResult::NoMemory);
    usbfs().setMemoryLimit(16 * 1024 * 1024);
    camera_.camera.send(numberedBytes(12));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(12));
}

constexpr std::size_t usualTransfer = std::size_t{128} * 1024;

/// Sends an object that the ring does not hold; what is left of it for the wire once as much has
/// come as comes before the computer reads.
std::size_t leftByTheRing(MockedUsbCamera& camera, const ByteBuffer& object)
{
    camera.send(object);
    EXPECT_TRUE(happens([&] { return camera.usbfs().counters().bytesInFlight == 0; }));
    // Were more to be read ahead, it would be now.
    std::this_thread::sleep_for(50ms);
    return camera.usbfs().unsentBytes();
}

ByteBuffer readAll(ConnectedCamera& camera, std::size_t size)
{
    ByteBuffer all;
    while (all.size() < size) {
        const ReadResult next = camera.read(1024 * 1024);
        if (!succeeded(next.result))
            break;
        all.insert(all.end(), next.bytes.begin(), next.bytes.end());
    }
    return all;
}

TEST_F(BulkInQueueFailureTest, WithoutMemoryNothingIsReadAheadUntilTheNextAnswer)
{
    const ByteBuffer object = numberedBytes(4 * 1024 * 1024 + 100);
    usbfs().failNext(USBDEVFS_SUBMITURB, ENOMEM);
    EXPECT_EQ(leftByTheRing(camera_.camera, object), object.size() - 15 * usualTransfer);
    EXPECT_EQ(readAll(camera_, object.size()), object);
    EXPECT_EQ(usbfs().waitingForIn(), 15U);

    camera_.camera.send(object);
    EXPECT_TRUE(happens([this] { return usbfs().unsentBytes() == 0; }));
    EXPECT_EQ(readAll(camera_, object.size()), object);
    EXPECT_EQ(usbfs().waitingForIn(), 15U);
}

TEST(HalvedRingTest, LeavesTheMemoryThatComesFreeToOthers)
{
    ConnectedCamera camera;
    camera.camera.usbfs().setMemoryLimit(8 * usualTransfer);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    ASSERT_TRUE(happens([&] { return camera.camera.usbfs().waitingForIn() == 4; }));
    camera.camera.usbfs().setMemoryLimit(16 * 1024 * 1024);
    const ByteBuffer object = numberedBytes(2 * 1024 * 1024 + 100);
    EXPECT_EQ(leftByTheRing(camera.camera, object), object.size() - 4 * usualTransfer);
    EXPECT_EQ(readAll(camera, object.size()), object);
}

// The transfers that are to leave the ring have filled by then, so that they can't be cancelled.
TEST(HalvedRingTest, KeepsItsTransfersWhenBytesWaitAtItsStart)
{
    ConnectedCamera camera;
    camera.camera.onControl([](const MockedSetup& setup, ByteView) -> std::optional<ByteBuffer> {
        return setup.bRequest == 0x67 ? deviceStatusBlock(0x2001) : ByteBuffer();
    });
    camera.camera.usbfs().setMemoryLimit(8 * usualTransfer);
    const ByteBuffer object = numberedBytes(2 * 1024 * 1024 + 100);
    camera.camera.send(object);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(readAll(camera, object.size()), object);
    const auto waiting = [&] { return camera.camera.usbfs().waitingForIn(); };
    EXPECT_GE(waiting(), 3U);

    // Now each of them ends as cancelled.
    EXPECT_EQ(camera.cancelRequest(), UsbResult::Success);
    EXPECT_EQ(camera.deviceStatus(), UsbResult::Success);
    camera.camera.onBulkOut([&](ByteView) { camera.camera.send(numberedBytes(12)); });
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(16)), UsbResult::Success);
    EXPECT_EQ(camera.read(5120).bytes, numberedBytes(12));
    EXPECT_GE(waiting(), 3U);
}

struct MemoryRow {
    std::size_t limit;
    std::size_t waiting;
    std::size_t depth;
    std::size_t transferSize;
};

class ShortOfMemoryTest : public testing::TestWithParam<MemoryRow> { };

TEST_P(ShortOfMemoryTest, TheRingBecomesAsSmallAsItHasTo)
{
    const MemoryRow& row = GetParam();
    ConnectedCamera camera;
    camera.camera.usbfs().setMemoryLimit(row.limit);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_TRUE(happens([&] { return camera.camera.usbfs().waitingForIn() == row.waiting; }));
    EXPECT_TRUE(happens([&] {
        const auto shape = dynamic_cast<LibusbInterface&>(*camera.interface).queueShape();
        return shape && shape->depth == row.depth && shape->transferSize == row.transferSize;
    }));
    const ByteBuffer object = numberedBytes(3'000'000);
    camera.camera.send(object);
    EXPECT_EQ(camera.read(4'000'000).bytes, object);
}

INSTANTIATE_TEST_SUITE_P(Limits, ShortOfMemoryTest,
                         testing::Values(MemoryRow{16 * 1024 * 1024, 15, 16, 128 * 1024},
                                         MemoryRow{15 * 128 * 1024 - 1, 7, 7, 128 * 1024},
                                         MemoryRow{1024 * 1024, 4, 4, 128 * 1024},
                                         MemoryRow{128 * 1024, 1, 1, 128 * 1024},
                                         MemoryRow{100 * 1024, 1, 1, 64 * 1024},
                                         MemoryRow{16 * 1024, 1, 1, 16 * 1024}));

TEST(NoMemoryTest, NotEvenOneSmallestTransferFits)
{
    ConnectedCamera camera;
    camera.camera.usbfs().setMemoryLimit(16 * 1024 - 1);
    EXPECT_EQ(camera.open(), UsbResult::NoMemory);
    EXPECT_TRUE(camera.camera.usbfs().counters().claimed.empty());
    camera.camera.usbfs().setMemoryLimit(16 * 1024 * 1024);
    EXPECT_EQ(camera.interface->open(), UsbResult::Success);
}

TEST(PacketSizeTest, TransfersHoldWholePacketsOfSuperSpeed)
{
    MockedUsbDescription description;
    description.speed = "5000";
    description.interfaces[0].endpoints = {{0x81, 2, 1024}, {0x02, 2, 1024}, {0x83, 3, 28}};
    ConnectedCamera camera(description);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.send(numberedBytes(200'000));
    EXPECT_EQ(camera.read(1'000'000).bytes, numberedBytes(200'000));
}

}  // namespace
}  // namespace nivor
