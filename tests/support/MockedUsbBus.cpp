#include "support/MockedUsbBus.h"

#include "support/MockedDeviceFiles.h"

#include <umockdev-1.0/umockdev.h>

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

// GLib's locks are its own and ThreadSanitizer knows nothing of them: what umockdev's worker and
// the test do one after the other looks simultaneous to it. libudev keeps the seed of its hashes
// without a lock, which only a test that plays the kernel in its own process can come across.
// Calls from other libraries, libusb's among them, stay under watch.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions()
{
    return "called_from_lib:libumockdev.so\n"
           "called_from_lib:libglib-2.0.so\n"
           "called_from_lib:libgobject-2.0.so\n"
           "called_from_lib:libgio-2.0.so\n"
           "called_from_lib:libudev.so\n";
}

namespace nivor::test {

struct MockedUsbBus::Testbed {
    UMockdevTestbed* testbed = umockdev_testbed_new();

    ~Testbed() { g_object_unref(testbed); }

    [[nodiscard]] std::string root() const
    {
        gchar* const text = umockdev_testbed_get_root_dir(testbed);
        std::string path = text;
        g_free(text);
        return path;
    }
};

MockedUsbBus::MockedUsbBus()
    : testbed_(std::make_unique<Testbed>())
{
    // Its answer is kept for the life of the process, so it must not be asked any earlier.
    if (!umockdev_in_mock_environment())
        throw std::runtime_error("this program is not linked to umockdev's preload library");
}

MockedUsbBus::~MockedUsbBus() = default;

std::string MockedUsbBus::deviceNode(const MockedUsbDescription& description)
{
    return fmt::format("/dev/bus/usb/{:03}/{:03}", description.bus, description.address);
}

std::string MockedUsbBus::add(const MockedUsbDescription& description)
{
    const std::string name = fmt::format("{}-{}", description.bus, description.port);
    const auto text = [](auto value) { return fmt::format("{}", value); };
    std::vector<std::string> attributes{
        "busnum",
        text(description.bus),
        "devnum",
        text(description.address),
        "speed",
        description.speed,
        "bConfigurationValue",
        text(description.isConfigured ? description.configurationValue : 0),
        "idVendor",
        fmt::format("{:04x}", description.vendorID),
        "idProduct",
        fmt::format("{:04x}", description.productID)};
    if (description.serialNumber && description.kernelKnowsSerialNumber) {
        attributes.emplace_back("serial");
        attributes.push_back(*description.serialNumber + "\n");
    }
    std::vector<std::string> properties{"DEVTYPE", "usb_device",
                                        "DEVNAME", deviceNode(description),
                                        "BUSNUM",  fmt::format("{:03}", description.bus),
                                        "DEVNUM",  fmt::format("{:03}", description.address)};
    const auto pointers = [](std::vector<std::string>& texts) {
        std::vector<gchar*> list;
        for (std::string& entry : texts)
            list.push_back(entry.data());
        list.push_back(nullptr);
        return list;
    };
    gchar* const made =
        umockdev_testbed_add_devicev(testbed_->testbed, "usb", name.c_str(), nullptr,
                                     pointers(attributes).data(), pointers(properties).data());
    if (!made)
        throw std::runtime_error("umockdev refused the device");
    std::string directory = made;
    g_free(made);
    ByteBuffer descriptors = descriptorsOf(description);
    umockdev_testbed_set_attribute_binary(testbed_->testbed, directory.c_str(), "descriptors",
                                          descriptors.data(),
                                          static_cast<gint>(descriptors.size()));
    return directory;
}

std::shared_ptr<EmulatedUsbfs> MockedUsbBus::serve(const MockedUsbDescription& description,
                                                   double bytesPerSecond)
{
    const std::string node = deviceNode(description);
    const std::string pipePath = testbed_->root() + node;
    std::filesystem::create_directories(std::filesystem::path(pipePath).parent_path());
    ::unlink(pipePath.c_str());
    if (::mkfifo(pipePath.c_str(), 0600) != 0)
        throw std::system_error(errno, std::generic_category(), pipePath);
    auto usbfs = std::make_shared<EmulatedUsbfs>(pipePath, description, bytesPerSecond);
    MockedDeviceFiles::instance().add(node, pipePath, usbfs);
    return usbfs;
}

void MockedUsbBus::announce(const std::string& directory)
{
    umockdev_testbed_uevent(testbed_->testbed, directory.c_str(), "add");
}

void MockedUsbBus::remove(const MockedUsbDescription& description, const std::string& directory)
{
    MockedDeviceFiles::instance().remove(deviceNode(description));
    ::unlink((testbed_->root() + deviceNode(description)).c_str());
    umockdev_testbed_uevent(testbed_->testbed, directory.c_str(), "remove");
    umockdev_testbed_remove_device(testbed_->testbed, directory.c_str());
}

void MockedUsbBus::forgetLeft()
{
    MockedDeviceFiles::instance().forgetLeft();
}

std::size_t MockedUsbBus::openCount(const std::string& deviceNode)
{
    return MockedDeviceFiles::instance().openCount(deviceNode);
}

void MockedUsbBus::failNextOpen(const std::string& deviceNode, int error)
{
    MockedDeviceFiles::instance().failNextOpen(deviceNode, error);
}

}  // namespace nivor::test
