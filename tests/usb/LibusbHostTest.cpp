// What is found on the bus, without a device being opened.
#include "support/ConnectedCamera.h"

#include <algorithm>

namespace nivor {
namespace {

using namespace test;

MockedUsbDescription at(unsigned bus, unsigned address, unsigned port)
{
    MockedUsbDescription description;
    description.bus = bus;
    description.address = address;
    description.port = port;
    return description;
}

TEST(LibusbHostTest, NothingAttached)
{
    MockedUsbBus bus;
    LibusbHost host;
    EXPECT_EQ(host.status(), UsbResult::Success);
    EXPECT_TRUE(host.stillImageInterfaces().empty());
    EXPECT_TRUE(host.devicesOnBus().empty());
}

TEST(LibusbHostTest, ACameraIsTold)
{
    MockedUsbBus bus;
    auto description = at(1, 5, 1);
    description.vendorID = 0x1209;
    description.productID = 0xABCD;
    const MockedUsbCamera camera(bus, description);
    LibusbHost host;
    const auto found = host.stillImageInterfaces();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].vendorID, 0x1209);
    EXPECT_EQ(found[0].productID, 0xABCD);
    EXPECT_EQ(found[0].location,
              (UsbLocation{1, 5, "high speed (480 Mb/s)", "/dev/bus/usb/001/005"}));
}

TEST(LibusbHostTest, CamerasComeInBusOrder)
{
    MockedUsbBus bus;
    const MockedUsbCamera a(bus, at(2, 3, 1));
    const MockedUsbCamera b(bus, at(1, 9, 2));
    const MockedUsbCamera c(bus, at(1, 4, 3));
    LibusbHost host;
    std::vector<std::pair<unsigned, unsigned>> places;
    for (const auto& found : host.stillImageInterfaces())
        places.emplace_back(found.location.bus, found.location.address);
    EXPECT_EQ(places, (std::vector<std::pair<unsigned, unsigned>>{{1, 4}, {1, 9}, {2, 3}}));
}

TEST(LibusbHostTest, OnlyTheWholeTripleCounts)
{
    MockedUsbBus bus;
    std::vector<std::unique_ptr<MockedUsbCamera>> devices;
    unsigned address = 2;
    for (const auto& [a, b, c] : {std::tuple(8, 6, 80), {6, 1, 0}, {6, 0, 1}, {255, 1, 1}}) {
        auto description = at(1, address, address);
        description.interfaces[0].interfaceClass = static_cast<std::uint8_t>(a);
        description.interfaces[0].interfaceSubClass = static_cast<std::uint8_t>(b);
        description.interfaces[0].interfaceProtocol = static_cast<std::uint8_t>(c);
        devices.push_back(std::make_unique<MockedUsbCamera>(bus, description));
        ++address;
    }
    LibusbHost host;
    EXPECT_TRUE(host.stillImageInterfaces().empty());
    EXPECT_EQ(host.devicesOnBus().size(), 4U);
}

TEST(LibusbHostTest, AnyAlternateSettingCountsOnceForItsInterface)
{
    MockedUsbBus bus;
    auto description = at(1, 2, 1);
    MockedInterface storage{.number = 0, .interfaceClass = 8};
    MockedInterface plain{.number = 1, .interfaceClass = 255};
    MockedInterface first{.number = 1, .alternateSetting = 1};
    MockedInterface second{.number = 1, .alternateSetting = 2};
    description.interfaces = {storage, plain, first, second};
    const MockedUsbCamera camera(bus, description);
    LibusbHost host;
    EXPECT_EQ(host.stillImageInterfaces().size(), 1U);
}

TEST(LibusbHostTest, TwoInterfacesOfACameraShareItsDevice)
{
    MockedUsbBus bus;
    auto description = at(1, 2, 1);
    description.interfaces = {MockedInterface{.number = 0}, MockedInterface{.number = 1}};
    const MockedUsbCamera camera(bus, description);
    LibusbHost host;
    const auto found = host.stillImageInterfaces();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].device, found[1].device);
}

TEST(LibusbHostTest, LookingOpensNothingAndKeepsTheDevice)
{
    MockedUsbBus bus;
    auto description = at(1, 5, 1);
    description.serialNumber = "SN-0042";
    const MockedUsbCamera camera(bus, description);
    LibusbHost host;
    const auto device = host.stillImageInterfaces().at(0).device;
    for (int i = 0; i < 100; ++i) {
        const auto found = host.stillImageInterfaces();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].device, device);
        EXPECT_EQ(found[0].device->serialNumber(), "SN-0042");
    }
    host.devicesOnBus();
    EXPECT_EQ(MockedUsbBus::openCount(camera.deviceNode()), 0U);
}

TEST(LibusbHostTest, ASerialNumberTheSystemDoesNotKnowIsAskedForOncePerAttach)
{
    MockedUsbBus bus;
    auto description = at(1, 5, 1);
    description.serialNumber = "SN-0043";
    description.kernelKnowsSerialNumber = false;
    MockedUsbCamera camera(bus, description);
    LibusbHost host;
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(host.stillImageInterfaces().at(0).device->serialNumber(), "SN-0043");
    EXPECT_EQ(MockedUsbBus::openCount(camera.deviceNode()), 1U);
    const auto old = host.stillImageInterfaces().at(0).device;
    camera.plug(6);
    ASSERT_TRUE(happens([&] {
        const auto found = host.stillImageInterfaces();
        return found.size() == 1 && found[0].device != old;
    }));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(host.stillImageInterfaces().at(0).device->serialNumber(), "SN-0043");
    EXPECT_EQ(MockedUsbBus::openCount(camera.deviceNode()), 1U);
    EXPECT_EQ(old->serialNumber(), "SN-0043");
}

TEST(LibusbHostTest, ASerialNumberThatCantBeReadIsNotAskedForAgain)
{
    MockedUsbBus bus;
    auto description = at(1, 5, 1);
    description.serialNumber = "SN-0044";
    description.kernelKnowsSerialNumber = false;
    const MockedUsbCamera camera(bus, description);
    MockedUsbBus::failNextOpen(camera.deviceNode(), EACCES);
    LibusbHost host;
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(host.stillImageInterfaces().at(0).device->serialNumber(), std::nullopt);
    EXPECT_EQ(MockedUsbBus::openCount(camera.deviceNode()), 1U);
}

TEST(LibusbHostTest, ACameraWithoutASerialNumberIsNotAskedForOne)
{
    MockedUsbBus bus;
    const MockedUsbCamera camera(bus, at(1, 5, 1));
    LibusbHost host;
    EXPECT_EQ(host.stillImageInterfaces().at(0).device->serialNumber(), std::nullopt);
    EXPECT_EQ(MockedUsbBus::openCount(camera.deviceNode()), 0U);
}

TEST(LibusbHostTest, PlugEventsAreFollowed)
{
    MockedUsbBus bus;
    LibusbHost host;
    EXPECT_TRUE(host.stillImageInterfaces().empty());
    MockedUsbCamera camera(bus, at(1, 5, 1));
    EXPECT_TRUE(happens([&] { return host.stillImageInterfaces().size() == 1; }));
    camera.unplug();
    EXPECT_TRUE(happens([&] { return host.stillImageInterfaces().empty(); }));
}

TEST(LibusbHostTest, ADeviceOutlivesItsHost)
{
    MockedUsbBus bus;
    MockedUsbCamera camera(bus, at(1, 5, 1));
    std::shared_ptr<UsbInterface> interface;
    {
        LibusbHost host;
        const auto device = host.stillImageInterfaces().at(0).device;
        ASSERT_EQ(device->open(), UsbResult::Success);
        ASSERT_EQ(device->findInterface(stillImageTriple, interface), UsbResult::Success);
        ASSERT_EQ(interface->open(), UsbResult::Success);
    }
    camera.send(numberedBytes(12));
    ByteBuffer buffer(100);
    std::size_t received = 0;
    EXPECT_EQ(interface->readPipe(buffer, received, {2s, 2s}), UsbResult::Success);
    EXPECT_EQ(received, 12U);
}

TEST(LibusbHostTest, TheBusReportTellsWhoMayUseADevice)
{
    MockedUsbBus bus;
    const MockedUsbCamera camera(bus, at(1, 5, 1));
    auto description = at(1, 6, 2);
    description.speed = "12";
    description.interfaces = {MockedInterface{.number = 0, .interfaceClass = 8},
                              MockedInterface{.number = 1, .interfaceClass = 8},
                              MockedInterface{.number = 2, .interfaceClass = 3}};
    const MockedUsbCamera disk(bus, description);
    LibusbHost host;
    const auto reports = host.devicesOnBus();
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_TRUE(reports[0].isStillImage);
    EXPECT_EQ(reports[0].interfaces, (std::vector{stillImageTriple}));
    EXPECT_TRUE(reports[0].readable);
    EXPECT_TRUE(reports[0].writable);
    EXPECT_TRUE(reports[0].holders.empty());
    EXPECT_FALSE(reports[1].isStillImage);
    EXPECT_EQ(reports[1].location.speed, "full speed (12 Mb/s)");
    EXPECT_EQ(reports[1].interfaces, (std::vector<InterfaceTriple>{{8, 1, 1}, {3, 1, 1}}));
}

}  // namespace
}  // namespace nivor
