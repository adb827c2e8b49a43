#include "simulator/SimulatedDevice.h"

#include <utility>

namespace nivor {

namespace {

constexpr std::uint8_t onlyConfiguration = 1;

}  // namespace

SimulatedDevice::SimulatedDevice(std::shared_ptr<SimulatedCamera> camera,
                                 std::shared_ptr<BulkInPipe> pipe)
    : camera_(std::move(camera))
    , pipe_(std::move(pipe))
    , open_(std::make_shared<std::atomic<bool>>(false))
    , interface_(std::make_shared<SimulatedInterface>(camera_, pipe_, open_))
{
}

UsbResult SimulatedDevice::resultOf(UsbStep step) const
{
    return isPresent() ? camera_->faultAt(step) : UsbResult::NoDevice;
}

std::string SimulatedDevice::productName()
{
    return camera_->identity().productName;
}

std::optional<std::string> SimulatedDevice::serialNumber()
{
    if (!succeeded(resultOf(UsbStep::SerialNumber)))
        return std::nullopt;
    return camera_->identity().serialNumber;
}

UsbResult SimulatedDevice::open()
{
    if (const UsbResult failure = resultOf(UsbStep::DeviceOpen); !succeeded(failure))
        return failure;
    return open_->exchange(true) ? UsbResult::ExclusiveAccess : UsbResult::Success;
}

UsbResult SimulatedDevice::close()
{
    const bool wasOpen = open_->exchange(false);
    if (!isPresent())
        return UsbResult::NoDevice;
    return wasOpen ? UsbResult::Success : UsbResult::NotOpen;
}

UsbResult SimulatedDevice::configurationValue(std::uint8_t index, std::uint8_t& value)
{
    if (const UsbResult failure = resultOf(UsbStep::ConfigurationDescriptor); !succeeded(failure))
        return failure;
    if (index != 0)
        return UsbResult::NotFound;
    value = onlyConfiguration;
    return UsbResult::Success;
}

UsbResult SimulatedDevice::setConfiguration(std::uint8_t value)
{
    if (const UsbResult failure = resultOf(UsbStep::SetConfiguration); !succeeded(failure))
        return failure;
    if (!isOpen())
        return UsbResult::NotOpen;
    return value == onlyConfiguration ? UsbResult::Success : UsbResult::PipeStalled;
}

UsbResult SimulatedDevice::findInterface(const InterfaceTriple& triple,
                                         std::shared_ptr<UsbInterface>& found)
{
    if (const UsbResult failure = resultOf(UsbStep::FindInterface); !succeeded(failure))
        return failure;
    if (triple != stillImageTriple)
        return UsbResult::NotFound;
    found = interface_;
    return UsbResult::Success;
}

UsbResult SimulatedDevice::controlRequest(ControlRequest& request)
{
    request.transferred = 0;
    if (!isPresent())
        return UsbResult::NoDevice;
    if (!isOpen())
        return UsbResult::NotOpen;
    const UsbResult result = camera_->control(request, *pipe_);
    return isPresent() ? result : UsbResult::NoDevice;
}

}  // namespace nivor
