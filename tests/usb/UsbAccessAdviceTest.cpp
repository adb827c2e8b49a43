#include "usb/UsbAccessAdvice.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <unistd.h>

namespace nivor {
namespace {

namespace fs = std::filesystem;

/// A /proc and a /sys of their own.
class UsbAccessAdviceTest : public testing::Test {
protected:
    UsbAccessAdviceTest()
    {
        fs::create_directories(root_ / "proc/self");
        fs::create_directories(root_ / "sys/bus/usb/devices");
    }

    static void write(const fs::path& file, const std::string& text)
    {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    void addProcess(long pid, const std::string& comm, const std::string& command,
                    const std::string& file)
    {
        const fs::path process = root_ / "proc" / std::to_string(pid);
        write(process / "comm", comm + "\n");
        write(process / "cmdline", command + std::string(1, '\0') + "--flag");
        fs::create_directories(process / "fd");
        fs::create_symlink("/dev/null", process / "fd/0");
        fs::create_symlink(file, process / "fd/7");
    }

    void addInterface(const std::string& device, const std::string& address,
                      const std::string& interfaceClass, const std::string& driver)
    {
        const fs::path directory = root_ / "sys/bus/usb/devices" / device;
        write(directory / "busnum", "1\n");
        write(directory / "devnum", address + "\n");
        const fs::path interface = directory / (device + ":1." + interfaceClass);
        write(interface / "bInterfaceClass", interfaceClass + "\n");
        if (!driver.empty())
            fs::create_symlink("../../../../bus/usb/drivers/" + driver, interface / "driver");
    }

    [[nodiscard]] UsbAccessAdvice advice() const
    {
        return UsbAccessAdvice({.proc = root_ / "proc", .sys = root_ / "sys"});
    }

    const test::TemporaryDirectory temporary_;
    const fs::path root_ = temporary_.path();
    const UsbLocation location_{1, 4, "high speed (480 Mb/s)", "/dev/bus/usb/001/004"};
};

TEST_F(UsbAccessAdviceTest, NamesTheProgramsThatHaveTheDeviceOpen)
{
    addProcess(4711, "photo-import", "/usr/bin/photo-import", "/dev/bus/usb/001/004");
    addProcess(12, "a-volume-monito", "/usr/libexec/a-volume-monitor", "/dev/bus/usb/001/004");
    addProcess(13, "other", "/usr/bin/other", "/dev/bus/usb/001/005");
    EXPECT_EQ(advice().holders(location_),
              (std::vector<UsbDeviceHolder>{{12, "a-volume-monitor"}, {4711, "photo-import"}}));
    EXPECT_EQ(advice().message(location_, UsbResult::ExclusiveAccess),
              "The camera (bus 1, address 4) is in use by a-volume-monitor (process 12) and "
              "photo-import (process 4711). Close what uses it, or eject the camera in the file "
              "manager, then try once more.");
}

TEST_F(UsbAccessAdviceTest, ThisProcessIsNoStranger)
{
    addProcess(getpid(), "self", "/usr/bin/self", "/dev/bus/usb/001/004");
    EXPECT_TRUE(advice().holders(location_).empty());
}

TEST_F(UsbAccessAdviceTest, NamesTheKernelDriver)
{
    addInterface("1-2", "4", "06", "somecam");
    addInterface("1-2", "4", "08", "usb-storage");
    addInterface("1-3", "5", "06", "othercam");
    EXPECT_EQ(advice().kernelDrivers(location_), (std::vector<std::string>{"somecam"}));
    EXPECT_EQ(advice().message(location_, UsbResult::ExclusiveAccess),
              "The camera (bus 1, address 4) is in use by the kernel driver somecam. Close what "
              "uses it, or eject the camera in the file manager, then try once more.");
}

TEST_F(UsbAccessAdviceTest, TheDriverOfProgramsIsNone)
{
    addInterface("1-2", "4", "06", "usbfs");
    EXPECT_TRUE(advice().kernelDrivers(location_).empty());
}

TEST_F(UsbAccessAdviceTest, AnUnknownHolderIsStillAnswered)
{
    EXPECT_EQ(advice().message(location_, UsbResult::ExclusiveAccess),
              "Another program uses the camera (bus 1, address 4). Close every program that shows "
              "the camera or its pictures, or unplug the camera and plug it in again, then try "
              "once more.");
}

TEST_F(UsbAccessAdviceTest, MissingDirectoriesAreNoError)
{
    const UsbAccessAdvice blind({.proc = root_ / "none", .sys = root_ / "none"});
    EXPECT_TRUE(blind.holders(location_).empty());
    EXPECT_TRUE(blind.kernelDrivers(location_).empty());
    EXPECT_FALSE(blind.message(location_, UsbResult::ExclusiveAccess).empty());
}

TEST_F(UsbAccessAdviceTest, LackOfPermissionNamesTheRule)
{
    EXPECT_EQ(advice().message(location_, UsbResult::NotPrivileged),
              "You have no permission to use the camera (/dev/bus/usb/001/004). Copy the file "
              "70-nivor-camera.rules to /etc/udev/rules.d as the superuser, run \"sudo udevadm "
              "control --reload\", then unplug the camera and plug it in again.");
}

TEST_F(UsbAccessAdviceTest, OtherResults)
{
    EXPECT_EQ(advice().message(location_, UsbResult::Success), "");
    EXPECT_EQ(advice().message(location_, UsbResult::NoDevice),
              "The camera is gone. Check the cable, switch the camera on and plug it in again.");
    EXPECT_EQ(advice().message(location_, UsbResult::NotFound),
              "The device (bus 1, address 4) has no still-image interface that can be used. Set "
              "the camera's USB mode to PTP or picture transfer.");
    EXPECT_EQ(advice().message(location_, UsbResult::TransactionTimeout),
              "The camera (bus 1, address 4) does not answer. Switch it off and on again.");
    EXPECT_EQ(advice().message(location_, UsbResult::PipeStalled),
              "The transfer from or to the camera (bus 1, address 4) failed: the endpoint "
              "stalled. Try another cable or another port, without a hub.");
    EXPECT_EQ(advice().message(location_, UsbResult::Error),
              "The camera (bus 1, address 4) can't be used: unspecified error. Unplug it and "
              "plug it in again.");
    EXPECT_NE(advice().message(location_, UsbResult::NoMemory).find("usbfs_memory_mb"),
              std::string::npos);
}

}  // namespace
}  // namespace nivor
