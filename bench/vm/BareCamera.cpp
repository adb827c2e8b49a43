#include "BareCamera.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace nivor::bench {
namespace {

constexpr std::uint16_t openSession = 0x1002;
constexpr std::uint16_t closeSession = 0x1003;
constexpr std::uint16_t commandContainer = 1;

// Long enough for any answer of a machine in emulation.
constexpr unsigned timeLimit = 20000;

constexpr std::size_t largestAnswer = std::size_t{64} * 1024;

void put(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

bool isStillImage(const libusb_interface_descriptor& description)
{
    return description.bInterfaceClass == LIBUSB_CLASS_IMAGE && description.bInterfaceSubClass == 1
        && description.bInterfaceProtocol == 1;
}

}  // namespace

std::uint16_t u16At(std::span<const std::uint8_t> bytes, std::size_t offset)
{
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

std::uint32_t u32At(std::span<const std::uint8_t> bytes, std::size_t offset)
{
    return u16At(bytes, offset) | std::uint32_t{u16At(bytes, offset + 2)} << 16;
}

void giveUp(const char* what, int code)
{
    std::fprintf(stderr, "null client: %s (%d)\n", what, code);
    std::exit(EXIT_FAILURE);
}

BareCamera::BareCamera()
    : answer_(largestAnswer)
{
    if (const int error = libusb_init(&context_); error != LIBUSB_SUCCESS)
        giveUp("no libusb", error);
    libusb_device** devices = nullptr;
    const ssize_t count = libusb_get_device_list(context_, &devices);
    for (ssize_t i = 0; i < count && handle_ == nullptr; ++i)
        claim(devices[i]);
    libusb_free_device_list(devices, 1);
    if (handle_ == nullptr)
        giveUp("no camera that can be opened", static_cast<int>(count));

    const std::array<std::uint32_t, 1> session{1};
    send(openSession, session);
    if (const std::size_t size = read(answer_);
        size < containerHeader || u16At(answer_, 4) != responseContainer)
        giveUp("no session", static_cast<int>(size));
}

BareCamera::~BareCamera()
{
    send(closeSession, {});
    read(answer_);
    libusb_release_interface(handle_, interface_);
    libusb_close(handle_);
    libusb_exit(context_);
}

bool BareCamera::claim(libusb_device* device)
{
    libusb_config_descriptor* configuration = nullptr;
    if (libusb_get_active_config_descriptor(device, &configuration) != LIBUSB_SUCCESS)
        return false;
    for (int i = 0; i < configuration->bNumInterfaces && handle_ == nullptr; ++i) {
        const libusb_interface_descriptor& description = *configuration->interface[i].altsetting;
        if (!isStillImage(description))
            continue;
        for (int e = 0; e < description.bNumEndpoints; ++e) {
            const libusb_endpoint_descriptor& endpoint = description.endpoint[e];
            if ((endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK) != LIBUSB_TRANSFER_TYPE_BULK)
                continue;
            const bool in = (endpoint.bEndpointAddress & LIBUSB_ENDPOINT_IN) != 0;
            (in ? bulkIn_ : bulkOut_) = endpoint.bEndpointAddress;
        }
        interface_ = description.bInterfaceNumber;
        if (const int error = libusb_open(device, &handle_); error != LIBUSB_SUCCESS)
            giveUp("the camera can't be opened", error);
        if (const int error = libusb_claim_interface(handle_, interface_); error != LIBUSB_SUCCESS)
            giveUp("the interface can't be claimed", error);
    }
    libusb_free_config_descriptor(configuration);
    return handle_ != nullptr;
}

void BareCamera::send(std::uint16_t operation, std::span<const std::uint32_t> parameters)
{
    std::array<std::uint8_t, containerHeader + 5 * sizeof(std::uint32_t)> command{};
    const std::size_t size = containerHeader + parameters.size_bytes();
    put(command, 0, static_cast<std::uint32_t>(size), 4);
    put(command, 4, commandContainer, 2);
    put(command, 6, operation, 2);
    put(command, 8, transaction_++, 4);
    for (std::size_t i = 0; i < parameters.size(); ++i)
        put(command, containerHeader + i * sizeof(std::uint32_t), parameters[i], 4);
    int written = 0;
    const int error = libusb_bulk_transfer(handle_, bulkOut_, command.data(),
                                           static_cast<int>(size), &written, timeLimit);
    if (error != LIBUSB_SUCCESS)
        giveUp("a command was not taken", error);
}

std::size_t BareCamera::read(std::span<std::uint8_t> buffer)
{
    int received = 0;
    const int error = libusb_bulk_transfer(handle_, bulkIn_, buffer.data(),
                                           static_cast<int>(buffer.size()), &received, timeLimit);
    if (error != LIBUSB_SUCCESS)
        giveUp("a read failed", error);
    return static_cast<std::size_t>(received);
}

std::span<const std::uint8_t> BareCamera::ask(std::uint16_t operation,
                                              std::span<const std::uint32_t> parameters)
{
    send(operation, parameters);
    const std::size_t size = read(answer_);
    if (size < containerHeader || u16At(answer_, 4) != dataContainer || u32At(answer_, 0) != size)
        giveUp("data expected", operation);
    std::array<std::uint8_t, 512> response{};
    if (read(response) < containerHeader || u16At(response, 4) != responseContainer)
        giveUp("a response expected", operation);
    return std::span(answer_).first(size).subspan(containerHeader);
}

}  // namespace nivor::bench
