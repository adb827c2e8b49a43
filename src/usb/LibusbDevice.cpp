#include "usb/LibusbDevice.h"

#include "usb/LibusbResult.h"
#include "usb/UsbSerialNumber.h"

#include <fmt/format.h>

#include <filesystem>
#include <span>
#include <utility>

namespace nivor {

namespace {

std::string speedInWords(int speed)
{
    switch (speed) {
    case LIBUSB_SPEED_LOW:
        return "low speed (1.5 Mb/s)";
    case LIBUSB_SPEED_FULL:
        return "full speed (12 Mb/s)";
    case LIBUSB_SPEED_HIGH:
        return "high speed (480 Mb/s)";
    case LIBUSB_SPEED_SUPER:
        return "super speed (5 Gb/s)";
    case LIBUSB_SPEED_SUPER_PLUS:
        return "super speed plus (10 Gb/s)";
    default:
        return {};
    }
}

std::string deviceNode([[maybe_unused]] unsigned bus, [[maybe_unused]] unsigned address)
{
#ifdef __linux__
    std::string path = fmt::format("/dev/bus/usb/{:03}/{:03}", bus, address);
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored))
        return path;
#endif
    return {};
}

/// All alternate settings of all interfaces, in descriptor order.
std::vector<const libusb_interface_descriptor*> settingsOf(const libusb_config_descriptor& config)
{
    std::vector<const libusb_interface_descriptor*> settings;
    for (const libusb_interface& interface : std::span(config.interface, config.bNumInterfaces)) {
        const auto count = static_cast<std::size_t>(interface.num_altsetting);
        for (const libusb_interface_descriptor& setting : std::span(interface.altsetting, count))
            settings.push_back(&setting);
    }
    return settings;
}

InterfaceTriple tripleOf(const libusb_interface_descriptor& setting)
{
    return {setting.bInterfaceClass, setting.bInterfaceSubClass, setting.bInterfaceProtocol};
}

InterfaceDescription describe(const libusb_interface_descriptor& setting)
{
    InterfaceDescription description{
        .number = setting.bInterfaceNumber,
        .alternateSetting = setting.bAlternateSetting,
        .endpoints = {},
    };
    for (const auto& endpoint : std::span(setting.endpoint, setting.bNumEndpoints)) {
        // The upper bits count transactions per microframe and are no part of the size.
        const auto size = static_cast<std::uint16_t>(endpoint.wMaxPacketSize & 0x7FF);
        description.endpoints.push_back({endpoint.bEndpointAddress, endpoint.bmAttributes, size});
    }
    return description;
}

}  // namespace

LibusbDevice::LibusbDevice(std::shared_ptr<libusb_context> context, libusb_device* device,
                           LibusbInterface::Note note)
    : context_(std::move(context))
    , device_(libusb_ref_device(device))
    , note_(std::move(note))
    , gone_(std::make_shared<std::atomic<bool>>(false))
{
    libusb_get_device_descriptor(device_, &descriptor_);
    location_.bus = libusb_get_bus_number(device_);
    location_.address = libusb_get_device_address(device_);
    location_.speed = speedInWords(libusb_get_device_speed(device_));
    location_.deviceNode = deviceNode(location_.bus, location_.address);
}

LibusbDevice::~LibusbDevice()
{
    handle_.reset();
    libusb_unref_device(device_);
}

std::optional<std::string> LibusbDevice::serialNumber()
{
    const std::lock_guard guard(serialMutex_);
    if (!std::exchange(serialAsked_, true))
        serial_ = readSerialNumber();
    return serial_;
}

std::string LibusbDevice::productName()
{
    return productNameKnownToSystem(device_).value_or("");
}

std::optional<std::string> LibusbDevice::readSerialNumber()
{
    if (descriptor_.iSerialNumber == 0)
        return std::nullopt;
    if (auto known = serialNumberKnownToSystem(device_))
        return known;
    std::shared_ptr<LibusbHandle> opened = handle();
    if (!opened && !succeeded(LibusbHandle::open(context_, device_, gone_, opened)))
        return std::nullopt;
    return serialNumberFromDevice(*opened, descriptor_.iSerialNumber);
}

std::shared_ptr<LibusbHandle> LibusbDevice::handle() const
{
    const std::lock_guard guard(handleMutex_);
    return handle_;
}

UsbResult LibusbDevice::open()
{
    if (*gone_)
        return UsbResult::NoDevice;
    if (handle())
        return UsbResult::Success;
    std::shared_ptr<LibusbHandle> opened;
    const UsbResult result = LibusbHandle::open(context_, device_, gone_, opened);
    const std::lock_guard guard(handleMutex_);
    handle_ = std::move(opened);
    return result;
}

UsbResult LibusbDevice::close()
{
    // Closed outside the lock, at the latest when its last user lets go.
    std::shared_ptr<LibusbHandle> closing;
    const std::lock_guard guard(handleMutex_);
    closing.swap(handle_);
    return closing ? UsbResult::Success : UsbResult::NotOpen;
}

UsbResult LibusbDevice::configurationValue(std::uint8_t index, std::uint8_t& value)
{
    if (*gone_)
        return UsbResult::NoDevice;
    libusb_config_descriptor* raw = nullptr;
    const UsbResult result =
        resultOfLibusbError(libusb_get_config_descriptor(device_, index, &raw));
    const Config config(raw);
    if (succeeded(result))
        value = config->bConfigurationValue;
    return result;
}

UsbResult LibusbDevice::setConfiguration(std::uint8_t value)
{
    if (*gone_)
        return UsbResult::NoDevice;
    const auto opened = handle();
    if (!opened)
        return UsbResult::NotOpen;
    int active = 0;
    if (libusb_get_configuration(opened->raw(), &active) == LIBUSB_SUCCESS && active == value)
        return UsbResult::Success;
    return opened->resultOf(libusb_set_configuration(opened->raw(), value));
}

UsbResult LibusbDevice::activeConfig(Config& config) const
{
    libusb_config_descriptor* raw = nullptr;
    int error = libusb_get_active_config_descriptor(device_, &raw);
    if (error == LIBUSB_ERROR_NOT_FOUND)
        error = libusb_get_config_descriptor(device_, 0, &raw);
    config.reset(raw);
    return resultOfLibusbError(error);
}

UsbResult LibusbDevice::findInterface(const InterfaceTriple& triple,
                                      std::shared_ptr<UsbInterface>& found)
{
    found.reset();
    if (*gone_)
        return UsbResult::NoDevice;
    Config config;
    if (const UsbResult result = activeConfig(config); !succeeded(result))
        return result;
    for (const auto* setting : settingsOf(*config)) {
        if (tripleOf(*setting) != triple)
            continue;
        // The interface keeps its device alive: the device owns what it reads and writes on.
        const auto source = [self = shared_from_this()] { return self->handle(); };
        found = std::make_shared<LibusbInterface>(describe(*setting), source, note_);
        return UsbResult::Success;
    }
    return UsbResult::NotFound;
}

UsbResult LibusbDevice::controlRequest(ControlRequest& request)
{
    request.transferred = 0;
    if (*gone_)
        return UsbResult::NoDevice;
    const auto opened = handle();
    return opened ? opened->controlRequest(request) : UsbResult::NotOpen;
}

void LibusbDevice::markGone()
{
    *gone_ = true;
    if (const auto opened = handle())
        opened->deviceLeft();
}

std::vector<LibusbDevice::Interface> LibusbDevice::interfaces() const
{
    std::vector<Interface> interfaces;
    Config config;
    if (!succeeded(activeConfig(config)))
        return interfaces;
    for (const auto* setting : settingsOf(*config))
        interfaces.push_back({setting->bInterfaceNumber, tripleOf(*setting)});
    return interfaces;
}

}  // namespace nivor
