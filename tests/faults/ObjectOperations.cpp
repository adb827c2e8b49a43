#include "faults/ObjectOperations.h"

#include "foundation/ResultText.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"

#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <utility>

namespace nivor::test {
namespace {

// Four reads, the last of them a short one.
constexpr std::size_t usualSize = 20'000;

std::string recordOf(const char* verb, bool success)
{
    return fmt::format("{} (result = {}, objHdr = <07000000>)", verb, resultText(success));
}

ByteBuffer bytesOfFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    ByteBuffer bytes(static_cast<std::size_t>(file.tellg()));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

}  // namespace

ByteBuffer objectBytes(std::size_t size)
{
    ByteBuffer bytes(size == 0 ? usualSize : size);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(1 + i % 251 + i / 251 % 5);
    return bytes;
}

CollectedOperation::CollectedOperation(std::string testName, const char* selector,
                                       std::uint16_t operationCode, Call call, const char* verb)
    : Operation(std::move(testName), selector, Kind::Collected, operationCode)
    , call_(call)
    , verb_(verb)
{
}

OperationRun CollectedOperation::run(PTPCommunication& engine, const Answer& answer,
                                     const std::filesystem::path& /*folder*/) const
{
    ByteBuffer bytes;
    OperationRun run = runOf([&] { return call_(engine, answer.payload().size(), bytes); });
    run.bytes = std::move(bytes);
    return run;
}

std::string CollectedOperation::record(bool success, std::uint16_t /*responseCode*/,
                                       const Answer& /*answer*/) const
{
    return recordOf(verb_, success);
}

ByteBuffer CollectedOperation::payload(std::size_t size) const
{
    return objectBytes(size);
}

bool getObjectCollected(PTPCommunication& engine, std::uint64_t size, ByteBuffer& bytes)
{
    return engine.getObject(testedHandle, size, &bytes, nullptr);
}

bool getThumbCollected(PTPCommunication& engine, std::uint64_t size, ByteBuffer& bytes)
{
    return engine.getThumb(testedHandle, size, &bytes);
}

GetObjectToFile::GetObjectToFile()
    : Operation("GetObjectToFile", "getObject:objectSize:objectBinaryData:callback:", Kind::File,
                0x1009)
{
}

OperationRun GetObjectToFile::run(PTPCommunication& engine, const Answer& answer,
                                  const std::filesystem::path& folder) const
{
    const std::filesystem::path path = folder / "object";
    OperationRun run;
    {
        auto file = std::make_shared<FileHandle>(FileHandle::create(path));
        GetObjectCallback sink(nullptr, std::move(file));
        run = runOf([&] {
            return engine.getObject(testedHandle, answer.payload().size(), nullptr, &sink);
        });
    }
    run.bytes = bytesOfFile(path);
    return run;
}

std::string GetObjectToFile::record(bool success, std::uint16_t /*responseCode*/,
                                    const Answer& /*answer*/) const
{
    return recordOf("getObject", success);
}

ByteBuffer GetObjectToFile::payload(std::size_t size) const
{
    return objectBytes(size);
}

}  // namespace nivor::test
