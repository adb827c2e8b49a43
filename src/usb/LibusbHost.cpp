#include "usb/LibusbHost.h"

#include "usb/LibusbDevice.h"
#include "usb/LibusbResult.h"

#include <algorithm>
#include <map>
#include <span>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace nivor {

/// The context and the devices seen at the last look.
class LibusbHost::Devices {
public:
    explicit Devices(Note note)
        : note_(std::move(note))
    {
        libusb_context* context = nullptr;
        status_ = resultOfLibusbError(libusb_init(&context));
        if (succeeded(status_))
            context_.reset(context, &libusb_exit);
    }

    [[nodiscard]] UsbResult status() const { return status_; }

    /// All attached devices in bus order. One that was there before is the same object again.
    std::vector<std::shared_ptr<LibusbDevice>> look()
    {
        if (!context_)
            return {};
        handleWaitingEvents();
        std::map<libusb_device*, std::shared_ptr<LibusbDevice>> now;
        libusb_device** list = nullptr;
        const auto count = libusb_get_device_list(context_.get(), &list);
        for (libusb_device* raw :
             std::span(list, count > 0 ? static_cast<std::size_t>(count) : 0)) {
            const auto known = known_.find(raw);
            now[raw] = known != known_.end() ? known->second
                                             : std::make_shared<LibusbDevice>(context_, raw, note_);
        }
        if (count >= 0) {
            libusb_free_device_list(list, 1);
            forgetAllBut(now);
        }
        return inBusOrder();
    }

private:
    /// libusb keeps a note of each plug event for whoever handles its events, and with it the
    /// device. Without an open interface that is nobody but this, which never waits.
    void handleWaitingEvents()
    {
        timeval noTime{.tv_sec = 0, .tv_usec = 0};
        libusb_handle_events_timeout_completed(context_.get(), &noTime, nullptr);
    }

    void forgetAllBut(std::map<libusb_device*, std::shared_ptr<LibusbDevice>>& now)
    {
        known_.swap(now);
        for (const auto& [raw, device] : now) {
            if (!known_.contains(raw))
                device->markGone();
        }
    }

    [[nodiscard]] std::vector<std::shared_ptr<LibusbDevice>> inBusOrder() const
    {
        std::vector<std::shared_ptr<LibusbDevice>> devices;
        for (const auto& [raw, device] : known_)
            devices.push_back(device);
        std::ranges::sort(devices, {}, [](const auto& device) {
            return std::tuple(device->location().bus, device->location().address);
        });
        return devices;
    }

    const Note note_;
    UsbResult status_ = UsbResult::Error;
    std::shared_ptr<libusb_context> context_;
    // Each device holds a reference to its key, so that no other can come to the same address.
    std::map<libusb_device*, std::shared_ptr<LibusbDevice>> known_;
};

LibusbHost::LibusbHost(Note note)
    : devices_(std::make_unique<Devices>(std::move(note)))
{
}

LibusbHost::~LibusbHost() = default;

UsbResult LibusbHost::status() const
{
    return devices_->status();
}

std::vector<StillImageInterface> LibusbHost::stillImageInterfaces()
{
    std::vector<StillImageInterface> found;
    for (const auto& device : devices_->look()) {
        std::vector<std::uint8_t> numbers;
        for (const auto& interface : device->interfaces()) {
            if (interface.triple == stillImageTriple)
                numbers.push_back(interface.number);
        }
        // Several alternate settings of one interface are still one interface.
        std::ranges::sort(numbers);
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        const StillImageInterface entry{device->vendorID(), device->productID(), device->location(),
                                        device};
        found.insert(found.end(), numbers.size(), entry);
    }
    return found;
}

std::vector<UsbDeviceReport> LibusbHost::devicesOnBus(const UsbAccessAdvice& advice)
{
    std::vector<UsbDeviceReport> reports;
    for (const auto& device : devices_->look()) {
        UsbDeviceReport report;
        report.location = device->location();
        report.vendorID = device->vendorID();
        report.productID = device->productID();
        for (const auto& interface : device->interfaces()) {
            if (std::ranges::find(report.interfaces, interface.triple) == report.interfaces.end())
                report.interfaces.push_back(interface.triple);
        }
        report.isStillImage =
            std::ranges::find(report.interfaces, stillImageTriple) != report.interfaces.end();
        const std::string& node = report.location.deviceNode;
        report.readable = !node.empty() && access(node.c_str(), R_OK) == 0;
        report.writable = !node.empty() && access(node.c_str(), W_OK) == 0;
        report.holders = advice.holders(report.location);
        reports.push_back(std::move(report));
    }
    return reports;
}

}  // namespace nivor
