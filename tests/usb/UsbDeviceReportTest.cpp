#include "usb/UsbDeviceReport.h"

#include <gtest/gtest.h>

namespace nivor {
namespace {

TEST(UsbDeviceReportTest, ClassesHaveNames)
{
    EXPECT_EQ(usbClassName(6), "still image");
    EXPECT_EQ(usbClassName(8), "mass storage");
    EXPECT_EQ(usbClassName(9), "hub");
    EXPECT_EQ(usbClassName(0xFF), "vendor specific");
    EXPECT_EQ(usbClassName(0x42), "class 0x42");
}

}  // namespace
}  // namespace nivor
