/// The operations that fetch an object or its thumbnail.
#pragma once

#include "faults/Operation.h"

namespace nivor::test {

/// Bytes of which no two make a small number: no piece of an object passes for a container.
[[nodiscard]] ByteBuffer objectBytes(std::size_t size);

/// GetObject and GetThumb into memory.
class CollectedOperation final : public Operation {
public:
    using Call = bool (*)(PTPCommunication&, std::uint64_t size, ByteBuffer& bytes);

    CollectedOperation(std::string testName, const char* selector, std::uint16_t operationCode,
                       Call call, const char* verb);

    OperationRun run(PTPCommunication& engine, const Answer& answer,
                     const std::filesystem::path& folder) const override;
    std::string record(bool success, std::uint16_t responseCode,
                       const Answer& answer) const override;

protected:
    ByteBuffer payload(std::size_t size) const override;

private:
    const Call call_;
    const char* const verb_;
};

bool getObjectCollected(PTPCommunication& engine, std::uint64_t size, ByteBuffer& bytes);
bool getThumbCollected(PTPCommunication& engine, std::uint64_t size, ByteBuffer& bytes);

/// GetObject with the sink that writes a file.
class GetObjectToFile final : public Operation {
public:
    GetObjectToFile();

    OperationRun run(PTPCommunication& engine, const Answer& answer,
                     const std::filesystem::path& folder) const override;
    std::string record(bool success, std::uint16_t responseCode,
                       const Answer& answer) const override;

protected:
    ByteBuffer payload(std::size_t size) const override;
};

}  // namespace nivor::test
