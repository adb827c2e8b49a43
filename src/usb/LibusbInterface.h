/// A still-image interface through libusb, with a queued reader on its bulk-in pipe.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include "usb/BulkInQueue.h"
#include "usb/LibusbHandle.h"
#include "usb/UsbInterface.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace nivor {

/// What the descriptors say of an interface in one alternate setting.
struct InterfaceDescription {
    struct Endpoint {
        std::uint8_t address;
        std::uint8_t attributes;
        std::uint16_t maxPacketSize;
    };

    std::uint8_t number;
    std::uint8_t alternateSetting;
    std::vector<Endpoint> endpoints;  ///< in the order of their descriptors
};

class LibusbInterface final : public UsbInterface {
public:
    using HandleSource = std::function<std::shared_ptr<LibusbHandle>()>;
    using Note = std::function<void(std::string_view)>;

    /// `handle` gives the device as it is open when the interface is opened, or none.
    LibusbInterface(InterfaceDescription description, HandleSource handle, Note note);
    ~LibusbInterface() override;

    /// Claims the interface, selects the alternate setting it was found in, and starts reading.
    /// `NotOpen` when the device is not open, `NotFound` when it has not both bulk pipes.
    UsbResult open() override;

    UsbResult close() override;
    UsbResult writePipe(ByteView bytes) override;
    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override;

    /// The reader's ring, for tests; nothing while the interface is closed.
    [[nodiscard]] std::optional<BulkInQueue::Shape> queueShape() const;

private:
    using Endpoint = InterfaceDescription::Endpoint;

    std::optional<Endpoint> pipe(std::size_t number, bool in) const;
    UsbResult claim(LibusbHandle& handle);
    UsbResult startReading();

    const InterfaceDescription description_;
    const HandleSource handleSource_;
    const Note note_;

    // All set while open.
    std::shared_ptr<LibusbHandle> handle_;
    std::shared_ptr<BulkInQueue> reader_;
    Endpoint bulkIn_{};
    Endpoint bulkOut_{};
};

}  // namespace nivor
