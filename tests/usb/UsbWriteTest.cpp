// The bulk-out pipe and the default control pipe, through the real libusb.
#include "support/ConnectedCamera.h"

#include <mutex>

namespace nivor {
namespace {

using namespace test;

TEST(UsbWriteTest, AWriteArrivesWholeInOneTransfer)
{
    ConnectedCamera camera;
    std::vector<ByteBuffer> written;
    camera.camera.onBulkOut(
        [&](ByteView bytes) { written.emplace_back(bytes.begin(), bytes.end()); });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(24)), UsbResult::Success);
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(200'000)), UsbResult::Success);
    EXPECT_EQ(written, (std::vector{numberedBytes(24), numberedBytes(200'000)}));
}

TEST(UsbWriteTest, AReadAlreadyWaitingGetsTheAnswer)
{
    ConnectedCamera camera;
    camera.camera.onBulkOut([&](ByteView) {
        camera.camera.send(numberedBytes(100'000));
        camera.camera.send(numberedBytes(12, 5));
    });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    for (int i = 0; i < 50; ++i) {
        std::jthread reader([&] {
            EXPECT_EQ(camera.read(1'000'000, 10s, 10s).bytes, numberedBytes(100'000));
            EXPECT_EQ(camera.read(5120, 10s, 10s).bytes, numberedBytes(12, 5));
        });
        EXPECT_EQ(camera.interface->writePipe(numberedBytes(16)), UsbResult::Success);
    }
}

TEST(UsbWriteTest, ACameraThatTakesNothingIsNotWaitedForForever)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.usbfs().setTakesBulkOut(false);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(12)), UsbResult::TransactionTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 15s);
}

TEST(ControlRequestTest, TheSetupAndTheDataArrive)
{
    ConnectedCamera camera;
    MockedSetup seen{};
    ByteBuffer sent;
    camera.camera.onControl([&](const MockedSetup& setup, ByteView data) {
        seen = setup;
        sent.assign(data.begin(), data.end());
        return std::optional(ByteBuffer());
    });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.cancelRequest(), UsbResult::Success);
    EXPECT_EQ(camera.transferred, 6U);
    EXPECT_EQ(seen.bmRequestType, 0x21);
    EXPECT_EQ(seen.bRequest, 0x64);
    EXPECT_EQ(seen.wLength, 6);
    EXPECT_EQ(sent, (ByteBuffer{0x01, 0x40, 7, 0, 0, 0}));
}

TEST(ControlRequestTest, AReplyOfNoBytesIsASuccess)
{
    ConnectedCamera camera;
    camera.camera.onControl(
        [](const MockedSetup&, ByteView) { return std::optional(ByteBuffer()); });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.deviceStatus(), UsbResult::Success);
    EXPECT_EQ(camera.transferred, 0U);
}

TEST(ControlRequestTest, ARequestTheCameraDoesNotKnowStalls)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.deviceStatus(), UsbResult::PipeStalled);
    EXPECT_EQ(camera.transferred, 0U);
}

TEST(ControlRequestTest, DataThatNoSetupPacketCanAnnounceIsRefused)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    ByteBuffer data(65536);
    EXPECT_EQ(camera.control(0xA1, 0x67, data), UsbResult::BadArgument);
}

TEST(ControlRequestTest, NeedsAnOpenDevice)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    EXPECT_EQ(camera.deviceStatus(), UsbResult::NotOpen);
}

}  // namespace
}  // namespace nivor
