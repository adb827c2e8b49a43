// What the engine itself costs: one small transaction, and a large object into a file.

#include "InMemoryCamera.h"
#include "PeakMemory.h"

#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "ptp/PTPCommunication.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

using namespace nivor;
using namespace nivor::bench;

constexpr std::uint64_t gibibyte = 1ULL << 30;

/// A folder below the current one: where the program's files go is what is to be measured.
std::filesystem::path workFolder()
{
    const std::filesystem::path folder = std::filesystem::current_path() / "bench-files";
    std::filesystem::create_directories(folder);
    return folder;
}

class Camera {
public:
    explicit Camera(std::uint64_t objectSize)
    {
        logger.setLogBaseName("Bench");
        logger.setSaveDirectory(workFolder() / "log");
        engine = std::make_unique<PTPCommunication>(
            EngineParts{.host = std::make_shared<InMemoryHost>(objectSize),
                        .logger = &logger,
                        .agentPause = {}});
        engine->connect(anyVendorID);
    }

    RollingLogger logger;
    std::unique_ptr<PTPCommunication> engine;
};

void GetObjectInfo(benchmark::State& state)
{
    Camera camera(0);
    const HandleBlock handle = HandleBlock::fromNumber(1);
    for (auto _ : state) {
        std::shared_ptr<ObjectInfoData> info;
        if (!camera.engine->getObjectInfo(handle, &info))
            state.SkipWithError("the transaction failed");
    }
}

void GetObjectIntoFile(benchmark::State& state)
{
    const auto size = static_cast<std::uint64_t>(state.range(0)) * gibibyte;
    Camera camera(size);
    const std::filesystem::path path = workFolder() / "object";
    double peak = 0;
    for (auto _ : state) {
        const PeakMemory memory;
        const auto file = std::make_shared<FileHandle>(FileHandle::create(path));
        GetObjectCallback sink(nullptr, file);
        if (!camera.engine->getObject(HandleBlock::fromNumber(1), size, nullptr, &sink))
            state.SkipWithError("the transaction failed");
        peak = memory.mebibytes();
        state.PauseTiming();
        std::filesystem::remove(path);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
    state.counters["peak_MiB"] = peak;
}

// The measure for the above: the same bytes to the same disk with nothing in between.
void PlainWrite(benchmark::State& state)
{
    const auto size = static_cast<std::uint64_t>(state.range(0)) * gibibyte;
    const ByteBuffer piece(ReceiveBuffer::size, 0x5A);
    const std::filesystem::path path = workFolder() / "plain";
    for (auto _ : state) {
        FileHandle file = FileHandle::create(path);
        for (std::uint64_t written = 0; written < size; written += piece.size())
            file.writeData(piece);
        state.PauseTiming();
        std::filesystem::remove(path);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void LogRecord(benchmark::State& state)
{
    Camera camera(0);
    for (auto _ : state)
        camera.logger.writeToFile("PTPCommunication", "writePipe:", "WritePipe (result = success)");
}

BENCHMARK(LogRecord)->Unit(benchmark::kMicrosecond);
BENCHMARK(GetObjectInfo)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly();
BENCHMARK(PlainWrite)
    ->Arg(1)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(7)
    ->ReportAggregatesOnly();
BENCHMARK(GetObjectIntoFile)
    ->Arg(1)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(7)
    ->ReportAggregatesOnly();
BENCHMARK(GetObjectIntoFile)->Arg(5)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
