// What the engine itself costs: a log record, one small transaction, an object into a file.

#include "AllocationCount.h"
#include "BareClient.h"
#include "InMemoryCamera.h"
#include "Measuring.h"
#include "Table.h"
#include "support/PeakMemory.h"

#include "datasets/ObjectInfoData.h"
#include "logging/AppendingFile.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "ptp/PTPCommunication.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

using namespace nivor;
using namespace nivor::bench;
using nivor::test::PeakMemory;

constexpr double toMicroseconds = 1e6;
constexpr std::size_t repetitions = 15;
constexpr std::size_t turns = 3000;

// The engine's reads of what is left of an object below the size of its buffer.
constexpr std::size_t smallRead = 5120;

void require(bool isMet)
{
    if (!isMet) {
        std::fputs("a transaction failed\n", stderr);
        std::exit(1);
    }
}

class Camera {
public:
    /// Without `hasLog` the records are made and then lost.
    explicit Camera(std::uint64_t objectSize, bool hasLog = true)
    {
        logger.setLogBaseName("Bench");
        if (hasLog)
            logger.setSaveDirectory(workFolder() / "log");
        engine = std::make_unique<PTPCommunication>(
            EngineParts{.host = std::make_shared<InMemoryHost>(objectSize),
                        .logger = &logger,
                        .agentPause = {}});
        require(engine->connect(anyVendorID));
    }

    void getObjectInfo() const
    {
        std::shared_ptr<ObjectInfoData> info;
        require(engine->getObjectInfo(HandleBlock::fromNumber(1), &info));
    }

    void getObject(std::uint64_t size, const std::filesystem::path& path) const
    {
        const auto file = std::make_shared<FileHandle>(FileHandle::create(path));
        GetObjectCallback sink(nullptr, file);
        require(engine->getObject(HandleBlock::fromNumber(1), size, nullptr, &sink));
    }

    RollingLogger logger;
    std::unique_ptr<PTPCommunication> engine;
};

void measureLogRecord()
{
    Camera camera(0);
    const auto record = [&] {
        camera.logger.writeToFile("PTPCommunication", "writePipe:", "WritePipe (result = success)");
    };
    const std::int64_t before = camera.logger.getFileSize(camera.logger.targetLogName());
    record();
    const std::int64_t after = camera.logger.getFileSize(camera.logger.targetLogName());
    const std::string text(static_cast<std::size_t>(after - before), 'x');
    const std::filesystem::path path = workFolder() / "log" / "plain";
    FileHandle::create(path).closeFile();
    AppendingFile file(path.string());
    const auto bare =
        scaled(secondsEach(repetitions, turns, [&] { file.append(text); }), toMicroseconds);
    print({"a log record", "us", scaled(secondsEach(repetitions, turns, record), toMicroseconds),
           Limit{median(bare), "its bytes by one write"}});
    std::filesystem::remove(path);
}

/// What is meant by "beyond": the pairs' differences, for the machine changes its pace.
void measureSmallTransaction()
{
    InMemoryHost host(0);
    BareClient bare(host);
    const Camera silent(0, false);
    const Camera logging(0);
    std::vector<double> transport;
    std::vector<double> engine;
    std::vector<double> engineBeyond;
    std::vector<double> whole;
    std::vector<double> wholeBeyond;
    const auto each = [](const std::function<void()>& turn) {
        return median(secondsEach(1, turns, turn)) * toMicroseconds;
    };
    for (std::size_t i = 0; i < repetitions; ++i) {
        transport.push_back(each([&] { bare.transact(OperationCode::GetObjectInfo, {1}); }));
        engine.push_back(each([&] { silent.getObjectInfo(); }));
        engineBeyond.push_back(engine.back() - transport.back());
        whole.push_back(each([&] { logging.getObjectInfo(); }));
        wholeBeyond.push_back(whole.back() - transport.back());
    }
    const Limit bareLimit{median(transport), "bare client"};
    print({"a GetObjectInfo without log", "us", engine, bareLimit});
    print({"a GetObjectInfo with its log records", "us", whole, bareLimit});
    print({"  of which beyond the transport, without log", "us", engineBeyond,
           Limit{60, "the goal"}});
    print({"  of which beyond the transport, with log", "us", wholeBeyond, Limit{120, "the goal"}});

    const std::size_t before = allocationCount();
    for (std::size_t i = 0; i < turns; ++i)
        logging.getObjectInfo();
    print({"  requests for memory in one of them",
           "",
           {static_cast<double>(allocationCount() - before) / turns}});
}

/// Pieces of 5120 bytes: the part of an object below 16 MiB, so all of a photo.
void measurePieces()
{
    constexpr std::uint64_t small = 4'000'000;
    constexpr std::uint64_t large = 12'000'000;
    const std::filesystem::path path = workFolder() / "object";
    const auto countFor = [&](std::uint64_t size) {
        const Camera camera(size);
        camera.getObject(size, path);
        std::filesystem::remove(path);
        const std::size_t before = allocationCount();
        camera.getObject(size, path);
        const std::size_t count = allocationCount() - before;
        std::filesystem::remove(path);
        return static_cast<double>(count);
    };
    constexpr double pieces = double{large - small} / smallRead;
    print({"requests for memory for each piece of an object",
           "",
           {(countFor(large) - countFor(small)) / pieces}});
}

/// An object into a file, each time beside the measure for it: the same bytes to the same disk with
/// nothing in between. Taken in pairs, since the disk and the memory behind it change their pace
/// from second to second.
void measureObject(const std::string& name, std::uint64_t size, std::size_t count,
                   std::size_t pieceSize, std::size_t pairs)
{
    const Camera camera(size);
    const ByteBuffer piece(pieceSize, 0x5A);
    const auto pathOf = [](std::size_t i) { return workFolder() / fmt::format("object{}", i); };
    const auto removeAll = [&] {
        for (std::size_t i = 0; i < count; ++i)
            std::filesystem::remove(pathOf(i));
    };
    const auto plainWrite = [&](std::size_t i) {
        FileHandle file = FileHandle::create(pathOf(i));
        for (std::uint64_t left = size; left > 0;) {
            const auto next = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()));
            file.writeData(ByteView(piece).first(next));
            left -= next;
        }
    };
    const auto timed = [&](const std::function<void(std::size_t)>& work) {
        const double seconds = secondsOf([&] {
            for (std::size_t i = 0; i < count; ++i)
                work(i);
        });
        removeAll();
        return seconds;
    };
    std::vector<double> plain;
    std::vector<double> object;
    double peak = 0;
    // The first pair only brings the memory into play.
    for (std::size_t pair = 0; pair <= pairs; ++pair) {
        const double plainSeconds = timed(plainWrite);
        const PeakMemory memory;
        const double objectSeconds =
            timed([&](std::size_t i) { camera.getObject(size, pathOf(i)); });
        peak = std::max(peak, memory.mebibytes());
        if (pair == 0)
            continue;
        plain.push_back(plainSeconds);
        object.push_back(objectSeconds);
    }
    const double megabytes = static_cast<double>(size * count) / 1e6;
    print({name, "MB/s", perSecond(megabytes, object),
           Limit{median(perSecond(megabytes, plain)),
                 fmt::format("plain writes of {} KiB", pieceSize / 1024)}});
    print({"  memory it took at most", "MiB", {peak}, Limit{16, "the receive buffer"}});
}

}  // namespace

int main()
{
    printTitle("Engine");
    measureLogRecord();
    measureSmallTransaction();
    measurePieces();
    constexpr std::size_t pairs = 9;
    measureObject("an object of 1 GiB into a file, not synchronised", 1ULL << 30, 1,
                  ReceiveBuffer::size, pairs);
    measureObject("64 photos of 5 MB into files, likewise", 5'000'000, 64, smallRead, pairs);
    return 0;
}
