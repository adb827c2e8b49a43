#include "StillImageFunction.h"

#include "codes/StillImageClass.h"

#include <fcntl.h>
#include <linux/usb/functionfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace nivor::bench {
namespace {

// The kernel takes these as they lie in memory; the machine is little-endian, as USB is.

struct [[gnu::packed]] Pipes {
    usb_interface_descriptor interface;
    usb_endpoint_descriptor_no_audio bulkIn;
    usb_endpoint_descriptor_no_audio bulkOut;
    usb_endpoint_descriptor_no_audio events;
};

struct [[gnu::packed]] SuperSpeedPipes {
    usb_interface_descriptor interface;
    usb_endpoint_descriptor_no_audio bulkIn;
    usb_ss_ep_comp_descriptor bulkInCompanion;
    usb_endpoint_descriptor_no_audio bulkOut;
    usb_ss_ep_comp_descriptor bulkOutCompanion;
    usb_endpoint_descriptor_no_audio events;
    usb_ss_ep_comp_descriptor eventsCompanion;
};

struct [[gnu::packed]] Descriptors {
    usb_functionfs_descs_head_v2 head;
    std::uint32_t fullSpeedCount;
    std::uint32_t highSpeedCount;
    std::uint32_t superSpeedCount;
    Pipes fullSpeed;
    Pipes highSpeed;
    SuperSpeedPipes superSpeed;
};

struct [[gnu::packed]] Strings {
    usb_functionfs_strings_head head;
    std::uint16_t language;
    char interfaceName[6];
};

constexpr std::uint32_t pipesCount = 4;
constexpr std::uint32_t superSpeedPipesCount = 7;
constexpr std::uint16_t eventPacketSize = 64;

usb_interface_descriptor interface()
{
    usb_interface_descriptor description{};
    description.bLength = sizeof description;
    description.bDescriptorType = USB_DT_INTERFACE;
    description.bNumEndpoints = 3;
    description.bInterfaceClass = stillImageTriple.interfaceClass;
    description.bInterfaceSubClass = stillImageTriple.interfaceSubClass;
    description.bInterfaceProtocol = stillImageTriple.interfaceProtocol;
    description.iInterface = 1;
    return description;
}

usb_endpoint_descriptor_no_audio endpoint(std::uint8_t address, std::uint8_t attributes,
                                          std::uint16_t packetSize, std::uint8_t interval)
{
    usb_endpoint_descriptor_no_audio description{};
    description.bLength = sizeof description;
    description.bDescriptorType = USB_DT_ENDPOINT;
    description.bEndpointAddress = address;
    description.bmAttributes = attributes;
    description.wMaxPacketSize = packetSize;
    description.bInterval = interval;
    return description;
}

usb_ss_ep_comp_descriptor companion(std::uint8_t maxBurst, std::uint16_t bytesPerInterval)
{
    usb_ss_ep_comp_descriptor description{};
    description.bLength = USB_DT_SS_EP_COMP_SIZE;
    description.bDescriptorType = USB_DT_SS_ENDPOINT_COMP;
    description.bMaxBurst = maxBurst;
    description.wBytesPerInterval = bytesPerInterval;
    return description;
}

Pipes pipes(std::uint16_t packetSize, std::uint8_t eventInterval)
{
    return {interface(), endpoint(1 | USB_DIR_IN, USB_ENDPOINT_XFER_BULK, packetSize, 0),
            endpoint(2 | USB_DIR_OUT, USB_ENDPOINT_XFER_BULK, packetSize, 0),
            endpoint(3 | USB_DIR_IN, USB_ENDPOINT_XFER_INT, eventPacketSize, eventInterval)};
}

Descriptors descriptors()
{
    constexpr std::uint8_t longestBurst = 15;
    const Pipes superSpeed = pipes(1024, 8);
    Descriptors all{};
    all.head.magic = FUNCTIONFS_DESCRIPTORS_MAGIC_V2;
    all.head.length = sizeof all;
    all.head.flags = FUNCTIONFS_HAS_FS_DESC | FUNCTIONFS_HAS_HS_DESC | FUNCTIONFS_HAS_SS_DESC;
    all.fullSpeedCount = all.highSpeedCount = pipesCount;
    all.superSpeedCount = superSpeedPipesCount;
    all.fullSpeed = pipes(64, 32);
    all.highSpeed = pipes(512, 8);
    all.superSpeed = {superSpeed.interface,         superSpeed.bulkIn,
                      companion(longestBurst, 0),   superSpeed.bulkOut,
                      companion(longestBurst, 0),   superSpeed.events,
                      companion(0, eventPacketSize)};
    return all;
}

Strings strings()
{
    constexpr std::uint16_t english = 0x0409;
    Strings all{{FUNCTIONFS_STRINGS_MAGIC, sizeof all, 1, 1}, english, "Still"};
    return all;
}

FileDescriptor opened(const std::string& path, int flags)
{
    FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC));
    if (!file)
        giveUp("can't open " + path + ": " + std::strerror(errno));
    return file;
}

template <typename Text> void tell(const FileDescriptor& control, const Text& text)
{
    if (::write(control.get(), &text, sizeof text) != static_cast<ssize_t>(sizeof text))
        giveUp(std::string("the kernel refuses the descriptors: ") + std::strerror(errno));
}

}  // namespace

void giveUp(const std::string& what)
{
    std::fprintf(stderr, "gadget camera: %s\n", what.c_str());
    std::exit(EXIT_FAILURE);
}

StillImageFunction::StillImageFunction(const std::string& folder)
    : control(opened(folder + "/ep0", O_RDWR))
{
    tell(control, descriptors());
    tell(control, strings());
    // In the order of the descriptors.
    bulkIn = opened(folder + "/ep1", O_RDWR);
    bulkOut = opened(folder + "/ep2", O_RDWR);
}

}  // namespace nivor::bench
