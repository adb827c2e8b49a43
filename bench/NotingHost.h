/// A USB that notes when a camera last said on its control pipe that it is ready.
#pragma once

#include "codes/ClassRequest.h"
#include "usb/UsbHost.h"

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nivor::bench {

/// Stands between the program and another host and passes everything on.
class NotingHost : public UsbHost {
public:
    using Clock = std::chrono::steady_clock;

    explicit NotingHost(std::shared_ptr<UsbHost> host)
        : host_(std::move(host))
    {
    }

    std::vector<StillImageInterface> stillImageInterfaces() override
    {
        std::vector<StillImageInterface> found = host_->stillImageInterfaces();
        for (StillImageInterface& entry : found) {
            std::shared_ptr<UsbDevice>& noting = devices_[entry.device];
            if (!noting)
                noting = std::make_shared<Device>(entry.device, answered_);
            entry.device = noting;
        }
        return found;
    }

    /// When the last request for the camera's status came back; the epoch before the first.
    [[nodiscard]] Clock::time_point answered() const { return answered_; }

private:
    class Device : public UsbDevice {
    public:
        Device(std::shared_ptr<UsbDevice> device, std::atomic<Clock::time_point>& answered)
            : device_(std::move(device))
            , answered_(answered)
        {
        }

        std::optional<std::string> serialNumber() override { return device_->serialNumber(); }
        std::string productName() override { return device_->productName(); }
        UsbResult open() override { return device_->open(); }
        UsbResult close() override { return device_->close(); }
        UsbResult configurationValue(std::uint8_t index, std::uint8_t& value) override
        {
            return device_->configurationValue(index, value);
        }
        UsbResult setConfiguration(std::uint8_t value) override
        {
            return device_->setConfiguration(value);
        }
        UsbResult findInterface(const InterfaceTriple& triple,
                                std::shared_ptr<UsbInterface>& found) override
        {
            return device_->findInterface(triple, found);
        }
        UsbResult controlRequest(ControlRequest& request) override
        {
            const UsbResult result = device_->controlRequest(request);
            if (request.bRequest == static_cast<std::uint8_t>(ClassRequest::GetDeviceStatus))
                answered_ = Clock::now();
            return result;
        }

    private:
        const std::shared_ptr<UsbDevice> device_;
        std::atomic<Clock::time_point>& answered_;
    };

    const std::shared_ptr<UsbHost> host_;
    std::map<std::shared_ptr<UsbDevice>, std::shared_ptr<UsbDevice>> devices_;
    std::atomic<Clock::time_point> answered_{};
};

}  // namespace nivor::bench
