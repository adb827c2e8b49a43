#include "usb/AwaitedTransfer.h"

#include "usb/LibusbResult.h"

#include <algorithm>
#include <condition_variable>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace nivor {

namespace {

/// libusb ends a transfer at its time-out, give or take this; beyond it something is broken.
constexpr std::chrono::milliseconds grace{2000};

/// The transfer with its buffer. Kept by its waiter and, while it is in flight, by itself.
class Awaited {
public:
    explicit Awaited(std::size_t size)
        : buffer(size)
        , transfer(libusb_alloc_transfer(0))
    {
    }

    ~Awaited() { libusb_free_transfer(transfer); }

    Awaited(const Awaited&) = delete;
    Awaited& operator=(const Awaited&) = delete;

    UsbResult run(const std::shared_ptr<Awaited>& self, std::chrono::milliseconds limit)
    {
        self_ = self;
        const UsbResult submitted = resultOfLibusbError(libusb_submit_transfer(transfer));
        if (!succeeded(submitted)) {
            self_.reset();
            return submitted;
        }
        if (!ends(limit + grace)) {
            libusb_cancel_transfer(transfer);
            // If that does not help either, the kernel keeps the buffer, and so does it itself.
            if (!ends(grace))
                return UsbResult::TransactionTimeout;
        }
        const std::lock_guard guard(mutex_);
        return resultOfTransferStatus(transfer->status);
    }

    [[nodiscard]] std::size_t count() const
    {
        return static_cast<std::size_t>(std::max(transfer->actual_length, 0));
    }

    static void LIBUSB_CALL ended(libusb_transfer* transfer)
    {
        auto& awaited = *static_cast<Awaited*>(transfer->user_data);
        const std::shared_ptr<Awaited> self = std::move(awaited.self_);
        const std::lock_guard guard(awaited.mutex_);
        awaited.ended_ = true;
        awaited.changed_.notify_all();
    }

    ByteBuffer buffer;
    libusb_transfer* const transfer;

private:
    bool ends(std::chrono::milliseconds within)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_until(lock, std::chrono::steady_clock::now() + within,
                                   [this] { return ended_; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool ended_ = false;
    std::shared_ptr<Awaited> self_;
};

/// libusb takes 0 for "no limit", which no transfer here may have.
std::chrono::milliseconds bounded(std::chrono::milliseconds limit)
{
    return std::clamp(limit, std::chrono::milliseconds(1),
                      std::chrono::milliseconds(std::chrono::hours(1)));
}

unsigned inMilliseconds(std::chrono::milliseconds limit)
{
    return static_cast<unsigned>(limit.count());
}

}  // namespace

UsbResult awaitControl(libusb_device_handle* handle, ControlRequest& request)
{
    request.transferred = 0;
    const auto size = request.data.size();
    if (size > std::numeric_limits<std::uint16_t>::max())
        return UsbResult::BadArgument;
    const auto awaited = std::make_shared<Awaited>(LIBUSB_CONTROL_SETUP_SIZE + size);
    if (!awaited->transfer)
        return UsbResult::NoMemory;
    const auto limit = bounded(request.timeouts.completion);
    const bool in = (request.bmRequestType & LIBUSB_ENDPOINT_IN) != 0;
    std::uint8_t* const data = awaited->buffer.data() + LIBUSB_CONTROL_SETUP_SIZE;
    libusb_fill_control_setup(awaited->buffer.data(), request.bmRequestType, request.bRequest,
                              request.wValue, request.wIndex, static_cast<std::uint16_t>(size));
    if (!in)
        std::ranges::copy(request.data, data);
    libusb_fill_control_transfer(awaited->transfer, handle, awaited->buffer.data(), &Awaited::ended,
                                 awaited.get(), inMilliseconds(limit));
    const UsbResult result = awaited->run(awaited, limit);
    if (succeeded(result)) {
        request.transferred = std::min(awaited->count(), size);
        if (in)
            std::copy_n(data, request.transferred, request.data.begin());
    }
    return result;
}

UsbResult awaitBulkOut(libusb_device_handle* handle, std::uint8_t endpoint, ByteView bytes,
                       std::chrono::milliseconds limit)
{
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return UsbResult::BadArgument;
    const auto awaited = std::make_shared<Awaited>(bytes.size());
    if (!awaited->transfer)
        return UsbResult::NoMemory;
    std::ranges::copy(bytes, awaited->buffer.begin());
    limit = bounded(limit);
    libusb_fill_bulk_transfer(awaited->transfer, handle, endpoint, awaited->buffer.data(),
                              static_cast<int>(bytes.size()), &Awaited::ended, awaited.get(),
                              inMilliseconds(limit));
    const UsbResult result = awaited->run(awaited, limit);
    // The device has taken all of it just when the time ran out.
    if (result == UsbResult::TransactionTimeout && !bytes.empty()
        && awaited->count() == bytes.size())
        return UsbResult::Success;
    return result;
}

}  // namespace nivor
