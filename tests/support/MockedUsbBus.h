/// The USB of a computer that exists only in this process: umockdev's sysfs, and device files
/// whose ioctl() requests are served here.
#pragma once

#include "support/EmulatedUsbfs.h"
#include "support/MockedUsbDescription.h"

#include <cstddef>
#include <memory>
#include <string>

namespace nivor::test {

/// At most one at a time, alive as long as anything uses libusb. Programs that link it need
/// umockdev's preload library among their own, see MockedUsb.cmake.
class MockedUsbBus {
public:
    MockedUsbBus();
    ~MockedUsbBus();

    MockedUsbBus(const MockedUsbBus&) = delete;
    MockedUsbBus& operator=(const MockedUsbBus&) = delete;

    /// Makes a device's files and returns its directory in sysfs.
    std::string add(const MockedUsbDescription& description);

    /// Puts a kernel side behind the device file; a pace of 0 is as fast as memory.
    std::shared_ptr<EmulatedUsbfs> serve(const MockedUsbDescription& description,
                                         double bytesPerSecond);

    /// Sends the plug event of a device whose files are all made.
    void announce(const std::string& directory);

    /// Takes a device off the bus, with its unplug event.
    void remove(const MockedUsbDescription& description, const std::string& directory);

    /// Gives back what devices that have left still hold. Only while nothing uses libusb.
    static void forgetLeft();

    static std::string deviceNode(const MockedUsbDescription& description);

    /// How often that device file was opened since it was made.
    static std::size_t openCount(const std::string& deviceNode);

    /// The next open() of that device file fails with that errno; several failures add up.
    static void failNextOpen(const std::string& deviceNode, int error);

private:
    struct Testbed;

    std::unique_ptr<Testbed> testbed_;
};

}  // namespace nivor::test
