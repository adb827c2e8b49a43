// What the engine itself costs: one small transaction, and a large object into a file.

#include "InMemoryCamera.h"
#include "Measuring.h"
#include "support/PeakMemory.h"

#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "ptp/PTPCommunication.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <vector>

namespace {

using namespace nivor;
using namespace nivor::bench;
using nivor::test::PeakMemory;

constexpr std::uint64_t gibibyte = 1ULL << 30;

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

/// Fetches an object into a file, each time beside the measure for it: the same bytes to the same
/// disk with nothing in between. Taken in pairs, since the disk and the memory behind it change
/// their pace from second to second; the ratio is the median of the pairs'.
void GetObjectIntoFile(benchmark::State& state)
{
    const auto size = static_cast<std::uint64_t>(state.range(0)) * gibibyte;
    const auto pairs = static_cast<int>(state.range(1));
    Camera camera(size);
    const ByteBuffer piece(ReceiveBuffer::size, 0x5A);
    const std::filesystem::path path = workFolder() / "object";
    const auto plainWrite = [&] {
        FileHandle file = FileHandle::create(path);
        for (std::uint64_t written = 0; written < size; written += piece.size())
            file.writeData(piece);
    };
    const auto getObject = [&] {
        const auto file = std::make_shared<FileHandle>(FileHandle::create(path));
        GetObjectCallback sink(nullptr, file);
        if (!camera.engine->getObject(HandleBlock::fromNumber(1), size, nullptr, &sink))
            state.SkipWithError("the transaction failed");
    };

    double peak = 0;
    std::vector<double> plain;
    std::vector<double> object;
    std::vector<double> ratio;
    for (auto _ : state) {
        // The first of them only brings the memory into play.
        for (int pair = -1; pair < pairs; ++pair) {
            const double plainSeconds = secondsOf(plainWrite);
            std::filesystem::remove(path);
            const PeakMemory memory;
            const double objectSeconds = secondsOf(getObject);
            peak = std::max(peak, memory.mebibytes());
            std::filesystem::remove(path);
            if (pair < 0)
                continue;
            plain.push_back(plainSeconds);
            object.push_back(objectSeconds);
            ratio.push_back(plainSeconds / objectSeconds);
        }
        state.SetIterationTime(median(object));
    }
    const double megabytes = static_cast<double>(size) / 1e6;
    state.counters["object_MB/s"] = megabytes / median(object);
    state.counters["plain_MB/s"] = megabytes / median(plain);
    state.counters["ratio"] = median(ratio);
    state.counters["peak_MiB"] = peak;
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
BENCHMARK(GetObjectIntoFile)
    ->ArgNames({"GiB", "pairs"})
    ->Args({1, 9})
    ->Args({5, 1})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
