// Claiming an interface, its pipes, and letting it go again.
#include "support/ConnectedCamera.h"

#include <cerrno>
#include <filesystem>

namespace nivor {
namespace {

using namespace test;

std::ptrdiff_t openFiles()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

TEST(LibusbInterfaceTest, OpeningClaimsAndClosingReleases)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.camera.usbfs().counters().claimed, (std::map<int, int>{{0, 0}}));
    EXPECT_EQ(camera.interface->close(), UsbResult::Success);
    EXPECT_TRUE(camera.camera.usbfs().counters().claimed.empty());
    EXPECT_EQ(camera.camera.usbfs().counters().bytesInFlight, 0U);
    EXPECT_TRUE(camera.notes.empty());
}

TEST(LibusbInterfaceTest, SelectsTheAlternateSettingItWasFoundIn)
{
    MockedUsbDescription description;
    description.interfaces = {MockedInterface{.number = 1, .interfaceClass = 255},
                              MockedInterface{.number = 1, .alternateSetting = 2}};
    ConnectedCamera camera(description);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(camera.camera.usbfs().counters().claimed, (std::map<int, int>{{1, 2}}));
}

TEST(LibusbInterfaceTest, AnAlternateSettingThatCantBeSelectedIsTold)
{
    MockedUsbDescription description;
    description.interfaces[0].alternateSetting = 1;
    ConnectedCamera camera(description);
    camera.camera.usbfs().failNext(USBDEVFS_SETINTERFACE, EINVAL);
    EXPECT_EQ(camera.open(), UsbResult::NotFound);
    EXPECT_TRUE(camera.camera.usbfs().counters().claimed.empty());
}

TEST(LibusbInterfaceTest, OneThatAnotherProgramHoldsIsBusy)
{
    ConnectedCamera camera;
    camera.camera.usbfs().failNext(USBDEVFS_CLAIMINTERFACE, EBUSY);
    EXPECT_EQ(camera.open(), UsbResult::ExclusiveAccess);
    EXPECT_EQ(camera.read(100).result, UsbResult::NotOpen);
    EXPECT_EQ(camera.interface->open(), UsbResult::Success);
}

TEST(LibusbInterfaceTest, OneOfADeviceThatHasLeftIsGone)
{
    ConnectedCamera camera;
    camera.camera.usbfs().failNext(USBDEVFS_CLAIMINTERFACE, ENODEV);
    EXPECT_EQ(camera.open(), UsbResult::NoDevice);
}

TEST(LibusbInterfaceTest, NeedsAnOpenDevice)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    ASSERT_EQ(camera.device->findInterface(stillImageTriple, camera.interface), UsbResult::Success);
    EXPECT_EQ(camera.interface->open(), UsbResult::NotOpen);
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(12)), UsbResult::NotOpen);
    EXPECT_EQ(camera.read(12), (ReadResult{UsbResult::NotOpen, {}}));
    EXPECT_EQ(camera.interface->close(), UsbResult::NotOpen);
}

TEST(LibusbInterfaceTest, PipesInAnotherOrderAreFoundByDirection)
{
    MockedUsbDescription description;
    description.interfaces[0].endpoints = {{0x83, 3, 28}, {0x02}, {0x81}};
    ConnectedCamera camera(description);
    camera.camera.onBulkOut([&](ByteView) { camera.camera.send(numberedBytes(12)); });
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(
        camera.notes,
        (std::vector<std::string>{"Pipe 1 is not bulk-in: using endpoint 0x81 by direction"}));
    EXPECT_EQ(camera.interface->writePipe(numberedBytes(12)), UsbResult::Success);
    EXPECT_EQ(camera.read(100).bytes, numberedBytes(12));
}

TEST(LibusbInterfaceTest, BothPipesMayBeOutOfOrder)
{
    MockedUsbDescription description;
    description.interfaces[0].endpoints = {{0x02}, {0x83}};
    ConnectedCamera camera(description);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    EXPECT_EQ(
        camera.notes,
        (std::vector<std::string>{"Pipe 1 is not bulk-in: using endpoint 0x83 by direction",
                                  "Pipe 2 is not bulk-out: using endpoint 0x02 by direction"}));
}

TEST(LibusbInterfaceTest, WithoutBothPipesThereIsNothingToOpen)
{
    for (const auto& endpoints :
         {std::vector<MockedEndpoint>{{0x02}, {0x83, 3, 28}},
          std::vector<MockedEndpoint>{{0x81}, {0x83, 3, 28}}, std::vector<MockedEndpoint>{}}) {
        MockedUsbDescription description;
        description.interfaces[0].endpoints = endpoints;
        ConnectedCamera camera(description);
        EXPECT_EQ(camera.open(), UsbResult::NotFound);
        EXPECT_TRUE(camera.camera.usbfs().counters().claimed.empty());
    }
}

TEST(LibusbInterfaceTest, OpensAndClosesManyTimes)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    UsbInterface& interface = *camera.interface;
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(interface.close(), UsbResult::Success);
        EXPECT_EQ(interface.open(), UsbResult::Success);
    }
    camera.camera.send(numberedBytes(12));
    EXPECT_EQ(camera.read(100).bytes, numberedBytes(12));
}

TEST(LibusbInterfaceTest, LettingGoWithTransfersInFlightLeaksNothing)
{
    MockedUsbBus bus;
    MockedUsbCamera camera(bus);
    LibusbHost host;
    const auto device = host.stillImageInterfaces().at(0).device;
    std::vector<std::ptrdiff_t> files;
    for (int i = 0; i < 10; ++i) {
        std::shared_ptr<UsbInterface> interface;
        ASSERT_EQ(device->open(), UsbResult::Success);
        ASSERT_EQ(device->findInterface(stillImageTriple, interface), UsbResult::Success);
        ASSERT_EQ(interface->open(), UsbResult::Success);
        EXPECT_GT(camera.usbfs().counters().bytesInFlight, 0U);
        // Neither is closed in so many words the second time.
        if (i % 2 == 0) {
            EXPECT_EQ(interface->close(), UsbResult::Success);
        }
        interface.reset();
        EXPECT_EQ(device->close(), UsbResult::Success);
        EXPECT_EQ(camera.usbfs().counters().bytesInFlight, 0U);
        files.push_back(openFiles());
    }
    // The bus's own threads open a file now and then; a leak would grow with the rounds.
    EXPECT_LT(files.back(), files.front() + 5);
}

TEST(LibusbInterfaceTest, BytesFromBeforeClosingAreNotReadAfterOpeningAgain)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.open(), UsbResult::Success);
    camera.camera.send(numberedBytes(700));
    ASSERT_TRUE(happens([&] { return camera.camera.usbfs().waitingForIn() < 15; }));
    ASSERT_EQ(camera.interface->close(), UsbResult::Success);
    ASSERT_EQ(camera.interface->open(), UsbResult::Success);
    EXPECT_EQ(camera.read(5120, 30ms).result, UsbResult::TransactionTimeout);
}

}  // namespace
}  // namespace nivor
