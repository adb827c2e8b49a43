// What reading ahead is worth: the queued reader against one synchronous read at a time, through
// the real libusb over a wire of 40 MB/s (a good high-speed bus) and over one as fast as memory.

#include "support/MockedUsbCamera.h"
#include "usb/LibusbHost.h"

#include <benchmark/benchmark.h>
#include <libusb.h>

#include <chrono>
#include <memory>

namespace {

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;

constexpr double megabyte = 1e6;
constexpr unsigned char bulkInEndpoint = 0x81;
constexpr unsigned readTimeout = 2000;

/// Enough for a second and a half of a paced wire, or for a fraction of one of memory's speed.
std::size_t bytesFor(double bytesPerSecond)
{
    return static_cast<std::size_t>(bytesPerSecond > 0 ? 1.5 * bytesPerSecond : 400 * megabyte);
}

double paceOf(const benchmark::State& state)
{
    return static_cast<double>(state.range(0)) * megabyte;
}

void Queued(benchmark::State& state)
{
    const std::size_t total = bytesFor(paceOf(state));
    ByteBuffer buffer(static_cast<std::size_t>(state.range(1)));
    MockedUsbBus bus;
    MockedUsbCamera camera(bus, {}, paceOf(state));
    LibusbHost host;
    const std::shared_ptr<UsbDevice> device = host.stillImageInterfaces().at(0).device;
    std::shared_ptr<UsbInterface> interface;
    if (!succeeded(device->open()) || !succeeded(device->findInterface(stillImageTriple, interface))
        || !succeeded(interface->open())) {
        state.SkipWithError("the mocked camera could not be opened");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        camera.send(ByteBuffer(total));
        state.ResumeTiming();
        for (std::size_t done = 0, received = 0; done < total; done += received) {
            if (!succeeded(interface->readPipe(buffer, received, {600ms, 2000ms})))
                return state.SkipWithError("a read failed");
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(total) * state.iterations());
    interface->close();
    device->close();
}

void Synchronous(benchmark::State& state)
{
    const std::size_t total = bytesFor(paceOf(state));
    ByteBuffer buffer(static_cast<std::size_t>(state.range(1)));
    MockedUsbBus bus;
    MockedUsbCamera camera(bus, {}, paceOf(state));
    libusb_context* context = nullptr;
    libusb_init(&context);
    libusb_device_handle* handle = libusb_open_device_with_vid_pid(
        context, camera.description().vendorID, camera.description().productID);
    if (handle == nullptr || libusb_claim_interface(handle, 0) != 0)
        return state.SkipWithError("the mocked camera could not be opened");
    for (auto _ : state) {
        state.PauseTiming();
        camera.send(ByteBuffer(total));
        state.ResumeTiming();
        int received = 0;
        for (std::size_t done = 0; done < total; done += static_cast<std::size_t>(received)) {
            if (libusb_bulk_transfer(handle, bulkInEndpoint, buffer.data(),
                                     static_cast<int>(buffer.size()), &received, readTimeout)
                != 0)
                return state.SkipWithError("a read failed");
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(total) * state.iterations());
    libusb_close(handle);
    libusb_exit(context);
}

void shapes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"MB/s", "read"})
        ->ArgsProduct({{40, 0}, {5120}})
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5)
        ->ReportAggregatesOnly();
}

BENCHMARK(Queued)->Apply(shapes);
BENCHMARK(Synchronous)->Apply(shapes);

}  // namespace

BENCHMARK_MAIN();
