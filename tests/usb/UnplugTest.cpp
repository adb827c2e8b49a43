// A camera that leaves, and one that comes back.
#include "support/ConnectedCamera.h"

#include <future>

namespace nivor {
namespace {

using namespace test;

TEST(UnplugTest, AReadInFlightEndsAtOnceAndEveryCallAfterIt)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    auto reading = std::async(std::launch::async, [&] { return camera.read(5120, 20s, 20s); });
    std::this_thread::sleep_for(30ms);
    const auto start = std::chrono::steady_clock::now();
    camera.camera.unplug();
    EXPECT_EQ(reading.get(), (ReadResult{UsbResult::NoDevice, {}}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(camera.read(5120).result, UsbResult::NoDevice);
        EXPECT_EQ(camera.interface->writePipe(numberedBytes(12)), UsbResult::NoDevice);
        EXPECT_EQ(camera.deviceStatus(), UsbResult::NoDevice);
    }
    std::uint8_t value = 0;
    EXPECT_EQ(camera.device->configurationValue(0, value), UsbResult::NoDevice);
    EXPECT_EQ(camera.device->setConfiguration(1), UsbResult::NoDevice);
    std::shared_ptr<UsbInterface> interface;
    EXPECT_EQ(camera.device->findInterface(stillImageTriple, interface), UsbResult::NoDevice);
    EXPECT_EQ(camera.interface->close(), UsbResult::NoDevice);
    EXPECT_EQ(camera.device->close(), UsbResult::Success);
    EXPECT_EQ(camera.device->open(), UsbResult::NoDevice);
}

TEST(UnplugTest, BytesOfTheReadUnderWayAreStillGiven)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.send(numberedBytes(128 * 1024), WireEnd::Open);
    auto reading = std::async(std::launch::async, [&] { return camera.read(1 << 20, 20s, 20s); });
    // For the read to begin and the bytes to come into it, which nothing shows.
    std::this_thread::sleep_for(1s);
    camera.camera.unplug();
    EXPECT_EQ(reading.get(), (ReadResult{UsbResult::Success, numberedBytes(128 * 1024)}));
    EXPECT_EQ(camera.read(5120).result, UsbResult::NoDevice);
}

TEST(UnplugTest, TheListNoticesAndEndsAWaitingRead)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.unplug();
    EXPECT_TRUE(happens([&] { return camera.host.stillImageInterfaces().empty(); }));
    EXPECT_EQ(camera.device->controlRequest(*std::make_unique<ControlRequest>()),
              UsbResult::NoDevice);
}

TEST(UnplugTest, PluggedInAgainItIsAnotherDeviceEvenAtTheSameAddress)
{
    MockedUsbDescription description;
    description.serialNumber = "A1";
    ConnectedCamera camera(description);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    const auto old = camera.device;
    const auto oldInterface = camera.interface;
    for (const unsigned address : {6U, 6U, 7U}) {
        camera.camera.plug(address);
        ASSERT_TRUE(happens([&] {
            const auto now = camera.host.stillImageInterfaces();
            return now.size() == 1 && now[0].device != camera.device;
        }));
        ASSERT_EQ(camera.find(), UsbResult::Success);
        EXPECT_EQ(camera.host.stillImageInterfaces()[0].location.address, address);
        EXPECT_EQ(camera.device->serialNumber(), "A1");
        EXPECT_EQ(old->open(), UsbResult::NoDevice);
        ByteBuffer buffer(10);
        std::size_t received = 0;
        EXPECT_EQ(oldInterface->readPipe(buffer, received, {1s, 1s}), UsbResult::NoDevice);
    }
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.send(numberedBytes(12));
    EXPECT_EQ(camera.read(5120).bytes, numberedBytes(12));
}

TEST(UnplugTest, DuringWritesAndControlRequests)
{
    ConnectedCamera camera;
    camera.camera.onControl([](const MockedSetup&, ByteView) { return deviceStatusBlock(0x2019); });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.usbfs().setTakesBulkOut(false);
    auto writing = std::async(std::launch::async,
                              [&] { return camera.interface->writePipe(numberedBytes(12)); });
    auto asking = std::async(std::launch::async, [&] {
        UsbResult result = UsbResult::Success;
        while (succeeded(result))
            result = camera.deviceStatus();
        return result;
    });
    std::this_thread::sleep_for(50ms);
    camera.camera.unplug();
    EXPECT_EQ(writing.get(), UsbResult::NoDevice);
    EXPECT_EQ(asking.get(), UsbResult::NoDevice);
    EXPECT_EQ(camera.read(5120).result, UsbResult::NoDevice);
}

}  // namespace
}  // namespace nivor
