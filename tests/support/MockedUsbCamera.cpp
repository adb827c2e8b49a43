#include "support/MockedUsbCamera.h"

#include <utility>

namespace nivor::test {

MockedUsbCamera::MockedUsbCamera(MockedUsbBus& bus, MockedUsbDescription description)
    : MockedUsbCamera(bus, std::move(description), 0)
{
}

MockedUsbCamera::MockedUsbCamera(MockedUsbBus& bus, MockedUsbDescription description,
                                 double bytesPerSecond)
    : bus_(bus)
    , description_(std::move(description))
    , bytesPerSecond_(bytesPerSecond)
{
    appear();
}

MockedUsbCamera::~MockedUsbCamera()
{
    unplug();
}

std::shared_ptr<EmulatedUsbfs> MockedUsbCamera::current() const
{
    const std::lock_guard guard(mutex_);
    return usbfs_;
}

void MockedUsbCamera::appear()
{
    directory_ = bus_.add(description_);
    auto usbfs = bus_.serve(description_, bytesPerSecond_);
    usbfs->onBulkOut(bulkOut_);
    usbfs->onControl(control_);
    {
        const std::lock_guard guard(mutex_);
        usbfs_ = std::move(usbfs);
    }
    bus_.announce(directory_);
}

void MockedUsbCamera::onBulkOut(EmulatedUsbfs::BulkOut answer)
{
    bulkOut_ = answer;
    current()->onBulkOut(std::move(answer));
}

void MockedUsbCamera::onControl(EmulatedUsbfs::Control answer)
{
    control_ = answer;
    current()->onControl(std::move(answer));
}

void MockedUsbCamera::send(ByteBuffer bytes, WireEnd end)
{
    current()->send(std::move(bytes), end);
}

void MockedUsbCamera::failIn(int error)
{
    current()->failIn(error);
}

void MockedUsbCamera::unplug()
{
    if (directory_.empty())
        return;
    current()->leave();
    bus_.remove(description_, std::exchange(directory_, {}));
}

void MockedUsbCamera::plug(unsigned address)
{
    unplug();
    description_.address = address;
    appear();
}

}  // namespace nivor::test
