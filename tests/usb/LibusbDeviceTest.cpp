// Opening a device and its descriptors, through the real libusb.
#include "support/ConnectedCamera.h"

#include <cerrno>

namespace nivor {
namespace {

using namespace test;

struct OpenRow {
    int error;
    UsbResult result;
};

class OpenFailureTest : public testing::TestWithParam<OpenRow> { };

TEST_P(OpenFailureTest, EachCauseHasItsResult)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    // libusb tries once more where there is no file yet.
    MockedUsbBus::failNextOpen(camera.camera.deviceNode(), GetParam().error);
    MockedUsbBus::failNextOpen(camera.camera.deviceNode(), GetParam().error);
    EXPECT_EQ(camera.device->open(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Causes, OpenFailureTest,
                         testing::Values(OpenRow{EACCES, UsbResult::NotPrivileged},
                                         OpenRow{ENOENT, UsbResult::NoDevice},
                                         OpenRow{EIO, UsbResult::IOError}));

TEST(LibusbDeviceTest, OpensAgainAfterAFailureForLackOfPermission)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    MockedUsbBus::failNextOpen(camera.camera.deviceNode(), EACCES);
    EXPECT_EQ(camera.device->open(), UsbResult::NotPrivileged);
    EXPECT_EQ(camera.device->open(), UsbResult::Success);
}

TEST(LibusbDeviceTest, OpensOnceAndClosesOnce)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    EXPECT_EQ(camera.device->close(), UsbResult::NotOpen);
    EXPECT_EQ(camera.device->open(), UsbResult::Success);
    EXPECT_EQ(camera.device->open(), UsbResult::Success);
    EXPECT_EQ(MockedUsbBus::openCount(camera.camera.deviceNode()), 1U);
    EXPECT_EQ(camera.device->close(), UsbResult::Success);
    EXPECT_EQ(camera.device->close(), UsbResult::NotOpen);
}

TEST(LibusbDeviceTest, ReadsTheConfigurationValue)
{
    MockedUsbDescription description;
    description.configurationValue = 3;
    ConnectedCamera camera(description);
    ASSERT_EQ(camera.find(), UsbResult::Success);
    std::uint8_t value = 0;
    EXPECT_EQ(camera.device->configurationValue(0, value), UsbResult::Success);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(camera.device->configurationValue(1, value), UsbResult::NotFound);
}

MockedUsbDescription unconfigured()
{
    MockedUsbDescription description;
    description.isConfigured = false;
    return description;
}

TEST(LibusbDeviceTest, SendsAConfigurationThatIsNotTheActiveOne)
{
    ConnectedCamera camera(unconfigured());
    ASSERT_EQ(camera.find(), UsbResult::Success);
    EXPECT_EQ(camera.device->setConfiguration(1), UsbResult::NotOpen);
    ASSERT_EQ(camera.device->open(), UsbResult::Success);
    EXPECT_EQ(camera.device->setConfiguration(1), UsbResult::Success);
    EXPECT_EQ(camera.camera.usbfs().counters().configurations, (std::vector{1}));
}

TEST(LibusbDeviceTest, LeavesADeviceThatIsConfiguredAlone)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    ASSERT_EQ(camera.device->open(), UsbResult::Success);
    EXPECT_EQ(camera.device->setConfiguration(1), UsbResult::Success);
    EXPECT_EQ(camera.camera.usbfs().counters().configurations, std::vector<int>{});
}

TEST(LibusbDeviceTest, ARefusedConfigurationIsTold)
{
    ConnectedCamera camera(unconfigured());
    ASSERT_EQ(camera.find(), UsbResult::Success);
    ASSERT_EQ(camera.device->open(), UsbResult::Success);
    camera.camera.usbfs().failNext(USBDEVFS_SETCONFIGURATION, EBUSY);
    EXPECT_EQ(camera.device->setConfiguration(1), UsbResult::ExclusiveAccess);
}

TEST(LibusbDeviceTest, FindsNoInterfaceOfAnotherClass)
{
    ConnectedCamera camera;
    ASSERT_EQ(camera.find(), UsbResult::Success);
    std::shared_ptr<UsbInterface> interface;
    EXPECT_EQ(camera.device->findInterface({8, 6, 80}, interface), UsbResult::NotFound);
    EXPECT_EQ(interface, nullptr);
}

}  // namespace
}  // namespace nivor
