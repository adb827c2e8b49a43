#include "usb/LibusbInterface.h"

#include <fmt/format.h>

#include <utility>

namespace nivor {

namespace {

bool isBulk(const InterfaceDescription::Endpoint& endpoint, bool in)
{
    return (endpoint.attributes & LIBUSB_TRANSFER_TYPE_MASK) == LIBUSB_TRANSFER_TYPE_BULK
        && ((endpoint.address & LIBUSB_ENDPOINT_IN) != 0) == in;
}

}  // namespace

LibusbInterface::LibusbInterface(InterfaceDescription description, HandleSource handle, Note note)
    : description_(std::move(description))
    , handleSource_(std::move(handle))
    , note_(std::move(note))
{
}

LibusbInterface::~LibusbInterface()
{
    close();
}

/// The endpoint that is pipe `number`, counted from 1 in descriptor order, if it is the bulk pipe
/// of that direction; else the first one that is.
std::optional<LibusbInterface::Endpoint> LibusbInterface::pipe(std::size_t number, bool in) const
{
    const auto& endpoints = description_.endpoints;
    if (endpoints.size() >= number && isBulk(endpoints[number - 1], in))
        return endpoints[number - 1];
    for (const Endpoint& endpoint : endpoints) {
        if (!isBulk(endpoint, in))
            continue;
        if (note_)
            note_(fmt::format("Pipe {} is not bulk-{}: using endpoint 0x{:02x} by direction",
                              number, in ? "in" : "out", endpoint.address));
        return endpoint;
    }
    return std::nullopt;
}

UsbResult LibusbInterface::open()
{
    if (handle_)
        return UsbResult::Success;
    auto handle = handleSource_();
    if (!handle)
        return UsbResult::NotOpen;
    if (*handle->goneFlag())
        return UsbResult::NoDevice;
    const auto bulkIn = pipe(1, true);
    const auto bulkOut = pipe(2, false);
    if (!bulkIn || !bulkOut)
        return UsbResult::NotFound;
    bulkIn_ = *bulkIn;
    bulkOut_ = *bulkOut;
    if (const UsbResult claimed = claim(*handle); !succeeded(claimed))
        return claimed;
    handle_ = std::move(handle);
    const UsbResult started = startReading();
    if (!succeeded(started))
        close();
    return started;
}

UsbResult LibusbInterface::claim(LibusbHandle& handle)
{
    const UsbResult claimed =
        handle.resultOf(libusb_claim_interface(handle.raw(), description_.number));
    if (!succeeded(claimed) || description_.alternateSetting == 0)
        return claimed;
    const UsbResult selected = handle.resultOf(libusb_set_interface_alt_setting(
        handle.raw(), description_.number, description_.alternateSetting));
    if (!succeeded(selected))
        libusb_release_interface(handle.raw(), description_.number);
    return selected;
}

UsbResult LibusbInterface::startReading()
{
    reader_ = std::make_shared<BulkInQueue>(handle_->raw(), bulkIn_.address, bulkIn_.maxPacketSize,
                                            handle_->goneFlag());
    handle_->setReader(reader_);
    return reader_->start();
}

UsbResult LibusbInterface::close()
{
    if (!handle_)
        return UsbResult::NotOpen;
    handle_->setReader({});
    reader_->stop();
    reader_.reset();
    const UsbResult released =
        handle_->resultOf(libusb_release_interface(handle_->raw(), description_.number));
    handle_.reset();
    return released;
}

UsbResult LibusbInterface::writePipe(ByteView bytes)
{
    return handle_ ? handle_->write(bulkOut_.address, bytes) : UsbResult::NotOpen;
}

UsbResult LibusbInterface::readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                                    const UsbTimeouts& timeouts)
{
    received = 0;
    return reader_ ? reader_->read(buffer, received, timeouts) : UsbResult::NotOpen;
}

std::optional<BulkInQueue::Shape> LibusbInterface::queueShape() const
{
    return reader_ ? std::optional(reader_->shape()) : std::nullopt;
}

}  // namespace nivor
