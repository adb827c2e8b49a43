// The wire that is nothing but the seam: no libusb, no kernel, no look at what the bytes mean.
#include "faults/MemoryWire.h"

#include "faults/PacketPipe.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace nivor::test {
namespace {

/// What the camera does, whichever time it is plugged in.
struct Manners {
    std::mutex mutex;
    Wire::Command command;
    Wire::Control control;
    std::map<std::uint8_t, std::size_t> ignored;
    std::atomic<bool> refusesWrite{false};
};

/// One plugging-in of the camera, as the engine sees it.
class PluggedCamera final : public UsbDevice, public UsbInterface {
public:
    PluggedCamera(std::shared_ptr<Manners> manners, std::size_t packetSize)
        : pipe(packetSize)
        , manners_(std::move(manners))
    {
    }

    std::optional<std::string> serialNumber() override { return "SN-1"; }
    std::string productName() override { return {}; }
    UsbResult open() override { return UsbResult::Success; }
    UsbResult close() override { return UsbResult::Success; }
    UsbResult setConfiguration(std::uint8_t /*value*/) override { return UsbResult::Success; }

    UsbResult configurationValue(std::uint8_t /*index*/, std::uint8_t& value) override
    {
        value = 1;
        return UsbResult::Success;
    }

    UsbResult findInterface(const InterfaceTriple& /*triple*/,
                            std::shared_ptr<UsbInterface>& found) override
    {
        found = self.lock();
        return UsbResult::Success;
    }

    UsbResult controlRequest(ControlRequest& request) override
    {
        if (gone)
            return UsbResult::NoDevice;
        if (isIgnored(request.bRequest)) {
            std::this_thread::sleep_for(
                std::min(request.timeouts.noData, request.timeouts.completion));
            return UsbResult::TransactionTimeout;
        }
        const auto control = copyOf(manners_->control);
        const std::optional<ByteBuffer> reply = control ? control(request.bRequest) : std::nullopt;
        if (!reply)
            return UsbResult::PipeStalled;
        request.transferred = request.data.size();
        if ((request.bmRequestType & 0x80) != 0) {
            request.transferred = std::min(reply->size(), request.data.size());
            std::copy_n(reply->begin(), request.transferred, request.data.begin());
        }
        return UsbResult::Success;
    }

    UsbResult writePipe(ByteView bytes) override
    {
        if (gone)
            return UsbResult::NoDevice;
        if (manners_->refusesWrite.exchange(false))
            return UsbResult::IOError;
        if (const auto command = copyOf(manners_->command))
            command(bytes);
        return UsbResult::Success;
    }

    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& timeouts) override
    {
        return pipe.read(buffer, received, timeouts);
    }

    PacketPipe pipe;
    std::atomic<bool> gone{false};
    std::weak_ptr<PluggedCamera> self;

private:
    bool isIgnored(std::uint8_t request)
    {
        const std::lock_guard guard(manners_->mutex);
        const auto left = manners_->ignored.find(request);
        if (left == manners_->ignored.end() || left->second == 0)
            return false;
        --left->second;
        return true;
    }

    template <typename Function> Function copyOf(const Function& function)
    {
        const std::lock_guard guard(manners_->mutex);
        return function;
    }

    const std::shared_ptr<Manners> manners_;
};

class MemoryHost final : public UsbHost {
public:
    std::vector<StillImageInterface> stillImageInterfaces() override
    {
        return {{.vendorID = 0x1209,
                 .productID = 0x0001,
                 .location = {.bus = 1, .address = 5, .speed = {}, .deviceNode = {}},
                 .device = camera}};
    }

    std::shared_ptr<PluggedCamera> camera;
};

class MemoryWire final : public Wire {
public:
    explicit MemoryWire(std::size_t packetSize)
        : packetSize_(packetSize)
    {
        plug();
    }

    std::shared_ptr<UsbHost> host() override { return host_; }

    void onCommand(Command command) override
    {
        const std::lock_guard guard(manners_->mutex);
        manners_->command = std::move(command);
    }

    void onControl(Control control) override
    {
        const std::lock_guard guard(manners_->mutex);
        manners_->control = std::move(control);
    }

    void send(ByteBuffer bytes, WireEnd end) override { pipe().send(std::move(bytes), end, false); }
    void sendForEver(ByteBuffer bytes, WireEnd end) override
    {
        pipe().send(std::move(bytes), end, true);
    }
    void fail(UsbResult failure) override { pipe().fail(failure, false); }
    void stallForEver() override { pipe().fail(UsbResult::PipeStalled, true); }
    void leave() override
    {
        host_->camera->gone = true;
        pipe().fail(UsbResult::NoDevice, true);
    }

    void ignoreControl(std::uint8_t request, std::size_t times) override
    {
        const std::lock_guard guard(manners_->mutex);
        manners_->ignored[request] = times;
    }

    void forget() override { pipe().forget(); }
    void refuseNextWrite() override { manners_->refusesWrite = true; }

    void replug() override
    {
        host_->camera->gone = true;
        pipe().leave();
        plug();
    }

private:
    PacketPipe& pipe() { return host_->camera->pipe; }

    void plug()
    {
        host_->camera = std::make_shared<PluggedCamera>(manners_, packetSize_);
        host_->camera->self = host_->camera;
    }

    const std::size_t packetSize_;
    const std::shared_ptr<Manners> manners_ = std::make_shared<Manners>();
    const std::shared_ptr<MemoryHost> host_ = std::make_shared<MemoryHost>();
};

}  // namespace

std::unique_ptr<Wire> makeMemoryWire(std::size_t packetSize)
{
    return std::make_unique<MemoryWire>(packetSize);
}

}  // namespace nivor::test
