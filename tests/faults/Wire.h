/// A camera's end of a wire to the engine, on which a test does what it likes.
#pragma once

#include "support/MockedWire.h"
#include "usb/UsbHost.h"

#include <functional>
#include <memory>
#include <optional>

namespace nivor::test {

enum class WireKind {
    Memory,  ///< the seam itself, in memory
    Libusb,  ///< the real libusb over an emulated kernel
};

/// One camera, plugged in from the beginning. Any thread, but for `replug`.
class Wire {
public:
    /// The camera's reaction to a container; runs on the thread that writes it.
    using Command = std::function<void(ByteView)>;
    /// The reply to a class request, empty for one without a reply; none is a stall.
    using Control = std::function<std::optional<ByteBuffer>(std::uint8_t request)>;

    virtual ~Wire() = default;

    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    virtual std::shared_ptr<UsbHost> host() = 0;

    virtual void onCommand(Command command) = 0;
    virtual void onControl(Control control) = 0;

    /// Puts bytes into the bulk-in pipe, in packets.
    virtual void send(ByteBuffer bytes, WireEnd end) = 0;

    /// The same again and again, as fast as it is taken, but at most once a microframe.
    virtual void sendForEver(ByteBuffer bytes, WireEnd end) = 0;

    /// The bulk-in pipe fails behind what has been sent: a stall, an overrun, an I/O error.
    virtual void fail(UsbResult failure) = 0;

    /// From then on it stalls, however often that is cleared.
    virtual void stallForEver() = 0;

    /// The camera leaves the bus behind what has been sent.
    virtual void leave() = 0;

    /// The next `times` class requests of that code get no answer, not even a stall.
    virtual void ignoreControl(std::uint8_t request, std::size_t times) = 0;

    /// Forgets what has been sent and not taken, and what was to be sent for ever.
    virtual void forget() = 0;

    /// The next container does not reach the camera.
    virtual void refuseNextWrite() = 0;

    /// Pulls the plug and puts it in again; what was to be sent is gone.
    virtual void replug() = 0;

protected:
    Wire() = default;
};

}  // namespace nivor::test
