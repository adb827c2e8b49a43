#include "simulator/SimulatedInterface.h"

#include <utility>

namespace nivor {

SimulatedInterface::SimulatedInterface(std::shared_ptr<SimulatedCamera> camera,
                                       std::shared_ptr<BulkInPipe> pipe,
                                       std::shared_ptr<const std::atomic<bool>> deviceOpen)
    : camera_(std::move(camera))
    , pipe_(std::move(pipe))
    , deviceOpen_(std::move(deviceOpen))
{
}

UsbResult SimulatedInterface::open()
{
    if (!pipe_->isConnected())
        return UsbResult::NoDevice;
    if (const UsbResult failure = camera_->faultAt(UsbStep::InterfaceOpen); !succeeded(failure))
        return failure;
    if (!*deviceOpen_)
        return UsbResult::NotOpen;
    return open_.exchange(true) ? UsbResult::ExclusiveAccess : UsbResult::Success;
}

UsbResult SimulatedInterface::close()
{
    const bool wasOpen = open_.exchange(false);
    if (!pipe_->isConnected())
        return UsbResult::NoDevice;
    return wasOpen ? UsbResult::Success : UsbResult::NotOpen;
}

UsbResult SimulatedInterface::readiness(UsbStep step) const
{
    if (!pipe_->isConnected())
        return UsbResult::NoDevice;
    if (!*deviceOpen_ || !open_)
        return UsbResult::NotOpen;
    return camera_->faultAt(step);
}

UsbResult SimulatedInterface::writePipe(ByteView bytes)
{
    if (const UsbResult failure = readiness(UsbStep::WritePipe); !succeeded(failure))
        return failure;
    camera_->receive(bytes, *pipe_);
    return UsbResult::Success;
}

UsbResult SimulatedInterface::readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                                       const UsbTimeouts& timeouts)
{
    received = 0;
    if (const UsbResult failure = readiness(UsbStep::ReadPipe); !succeeded(failure))
        return failure;
    return pipe_->read(buffer, received, timeouts);
}

}  // namespace nivor
