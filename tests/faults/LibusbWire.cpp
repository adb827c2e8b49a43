#include "faults/LibusbWire.h"

#include "support/MockedUsbCamera.h"
#include "usb/LibusbHost.h"

#include <cerrno>
#include <utility>

namespace nivor::test {
namespace {

MockedUsbDescription cameraWithPacketsOf(std::uint16_t packetSize)
{
    MockedUsbDescription description;
    description.serialNumber = "SN-1";
    description.interfaces.front().endpoints = {{0x81, 2, packetSize}, {0x02}, {0x83, 3, 28}};
    return description;
}

class LibusbWire final : public Wire {
public:
    explicit LibusbWire(std::uint16_t packetSize)
        : camera_(bus(), cameraWithPacketsOf(packetSize))
        , host_(std::make_shared<LibusbHost>())
    {
    }

    std::shared_ptr<UsbHost> host() override { return host_; }

    void onCommand(Command command) override { camera_.onBulkOut(std::move(command)); }

    void onControl(Control control) override
    {
        camera_.onControl([control = std::move(control)](const MockedSetup& setup, ByteView) {
            return control(setup.bRequest);
        });
    }

    void send(ByteBuffer bytes, WireEnd end) override { camera_.send(std::move(bytes), end); }
    void sendForEver(ByteBuffer bytes, WireEnd end) override
    {
        camera_.usbfs().sendForEver(std::move(bytes), end);
    }
    void fail(UsbResult failure) override { camera_.failIn(errnoOf(failure)); }
    void stallForEver() override { camera_.usbfs().failInForEver(EPIPE); }
    void leave() override { camera_.usbfs().leave(); }
    void ignoreControl(std::uint8_t request, std::size_t times) override
    {
        camera_.usbfs().ignoreControl(request, times);
    }
    void forget() override { camera_.usbfs().forgetIn(); }

    // Nothing else is submitted while the camera has nothing to send.
    void refuseNextWrite() override { camera_.usbfs().failNext(USBDEVFS_SUBMITURB, EIO); }

    void replug() override { camera_.plug(++address_); }

private:
    // One for the whole process: each that umockdev makes keeps a socket for good.
    static MockedUsbBus& bus()
    {
        static MockedUsbBus shared;
        return shared;
    }

    /// The last to go.
    struct Tidying {
        ~Tidying() { MockedUsbBus::forgetLeft(); }
    };

    static int errnoOf(UsbResult failure)
    {
        switch (failure) {
        case UsbResult::PipeStalled:
            return EPIPE;
        case UsbResult::Overrun:
            return EOVERFLOW;
        default:
            return EPROTO;
        }
    }

    unsigned address_ = 5;
    const Tidying tidying_{};
    MockedUsbCamera camera_;
    const std::shared_ptr<LibusbHost> host_;
};

}  // namespace

std::unique_ptr<Wire> makeLibusbWire(std::uint16_t packetSize)
{
    return std::make_unique<LibusbWire>(packetSize);
}

}  // namespace nivor::test
