// What reading ahead is worth: the queued reader against bare loops over the real libusb, on a
// wire of 40 MB/s (a good high-speed bus), one of 400 MB/s and one as fast as memory; and which
// shape of the ring is worth having.

#include "Measuring.h"
#include "Table.h"
#include "support/MockedUsbCamera.h"
#include "usb/BulkInQueue.h"
#include "usb/UsbEventThread.h"

#include <fmt/format.h>
#include <libusb.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

using namespace nivor;
using namespace nivor::bench;
using namespace nivor::test;
using namespace std::chrono_literals;

constexpr double megabyte = 1e6;
constexpr unsigned char bulkInEndpoint = 0x81;
constexpr std::size_t packetSize = 512;
constexpr unsigned readTimeout = 2000;
constexpr std::size_t kibibyte = 1024;
constexpr std::size_t smallRead = 5120;
constexpr std::size_t largeRead = 512 * kibibyte;
constexpr int repetitions = 5;

void require(bool isMet)
{
    if (!isMet) {
        std::fputs("the mocked camera could not be read\n", stderr);
        std::exit(1);
    }
}

/// Three quarters of a second of a paced wire, or a fraction of one of memory's speed.
std::size_t bytesFor(double megabytesPerSecond)
{
    return static_cast<std::size_t>(megabyte
                                    * (megabytesPerSecond > 0 ? 0.75 * megabytesPerSecond : 256));
}

/// A camera on the mocked bus, opened by libusb.
class Wire {
public:
    explicit Wire(double megabytesPerSecond)
        : camera(bus_, {}, megabytesPerSecond * megabyte)
    {
        require(libusb_init(&context) == 0);
        handle = libusb_open_device_with_vid_pid(context, camera.description().vendorID,
                                                 camera.description().productID);
        require(handle != nullptr && libusb_claim_interface(handle, 0) == 0);
    }

    ~Wire()
    {
        libusb_close(handle);
        libusb_exit(context);
    }

    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

private:
    MockedUsbBus bus_;

public:
    MockedUsbCamera camera;
    libusb_context* context = nullptr;
    libusb_device_handle* handle = nullptr;
};

/// MB/s, for reads that answer with the number of bytes received.
std::vector<double> rates(Wire& wire, std::size_t total, const std::function<std::size_t()>& read)
{
    std::vector<double> values;
    for (int i = -1; i < repetitions; ++i) {
        wire.camera.send(ByteBuffer(total));
        const double seconds = secondsOf([&] {
            for (std::size_t done = 0; done < total;)
                done += read();
        });
        if (i >= 0)
            values.push_back(static_cast<double>(total) / megabyte / seconds);
    }
    return values;
}

std::vector<double> synchronousRates(double pace, std::size_t readSize)
{
    Wire wire(pace);
    ByteBuffer buffer(readSize);
    return rates(wire, bytesFor(pace), [&] {
        int received = 0;
        require(libusb_bulk_transfer(wire.handle, bulkInEndpoint, buffer.data(),
                                     static_cast<int>(buffer.size()), &received, readTimeout)
                == 0);
        return static_cast<std::size_t>(received);
    });
}

std::vector<double> queuedRates(double pace, std::size_t readSize,
                                BulkInQueue::Shape shape = BulkInQueue::usualShape)
{
    Wire wire(pace);
    const UsbEventThread events(wire.context);
    BulkInQueue queue(wire.handle, bulkInEndpoint, packetSize,
                      std::make_shared<std::atomic<bool>>(false), shape);
    require(succeeded(queue.start()));
    ByteBuffer buffer(readSize);
    std::vector<double> values = rates(wire, bytesFor(pace), [&] {
        std::size_t received = 0;
        require(succeeded(queue.read(buffer, received, {600ms, 2000ms})));
        return received;
    });
    queue.stop();
    return values;
}

void measureAt(double pace)
{
    const auto bare = synchronousRates(pace, largeRead);
    const Limit limit =
        pace > 0 ? Limit{pace, "the wire"} : Limit{median(bare), "bare libusb, 512 KiB at a time"};
    const std::string wire = pace > 0 ? fmt::format("{:.0f} MB/s", pace) : "memory's speed";
    print({fmt::format("wire of {}: queued, reads of 5 KiB", wire), "MB/s",
           queuedRates(pace, smallRead), limit});
    print({fmt::format("wire of {}: queued, reads of 16 MiB", wire), "MB/s",
           queuedRates(pace, 16384 * kibibyte), limit});
    print({"  bare libusb, 5 KiB at a time", "MB/s", synchronousRates(pace, smallRead), limit});
    print({"  bare libusb, 512 KiB at a time", "MB/s", bare, limit});
}

void measureShapes(double pace)
{
    for (const std::size_t size : {16U, 32U, 64U, 128U, 256U, 512U}) {
        for (const std::size_t depth : {2U, 4U, 8U, 16U, 32U}) {
            if (size * depth > 8192)
                continue;
            const auto values = queuedRates(pace, smallRead, {depth, size * kibibyte});
            print({fmt::format("  {} transfers of {} KiB", depth, size), "MB/s", values,
                   pace > 0 ? std::optional(Limit{pace, "the wire"}) : std::nullopt});
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    printTitle("Bulk in, mocked USB");
    if (argc > 1 && std::string_view(argv[1]) == "--shapes") {
        measureShapes(argc > 2 ? std::atof(argv[2]) : 0);
        return 0;
    }
    for (const double pace : {40.0, 400.0, 0.0})
        measureAt(pace);
    return 0;
}
