/// The operations whose data phase is a dataset.
#pragma once

#include "datasets/ObjectInfoBytes.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "faults/Operation.h"
#include "foundation/ByteWriter.h"
#include "foundation/ResultText.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivor::test {

/// A u32 count and as many u32 elements.
inline ByteBuffer arrayOf(std::size_t count, std::size_t size)
{
    if (size >= 4)
        count = (size - 4) / 4;
    ByteBuffer bytes;
    appendLittleEndian(bytes, static_cast<std::uint32_t>(count));
    for (std::size_t i = 0; i < count; ++i)
        appendLittleEndian(bytes, static_cast<std::uint32_t>(0x00010001 + 0x10000 * i));
    bytes.resize(std::max(bytes.size(), size), 0xEE);
    return bytes;
}

inline std::vector<std::uint32_t> elementsOf(const Answer& answer)
{
    std::vector<std::uint32_t> elements((answer.payload().size() - 4) / 4);
    for (std::size_t i = 0; i < elements.size(); ++i)
        elements[i] = static_cast<std::uint32_t>(0x00010001 + 0x10000 * i);
    return elements;
}

class GetStorageIDs final : public Operation {
public:
    GetStorageIDs()
        : Operation("GetStorageIDs", "getStorageIDs:", Kind::Dataset, 0x1004)
    {
    }

    OperationRun run(PTPCommunication& engine, const Answer& answer,
                     const std::filesystem::path& /*folder*/) const override
    {
        std::vector<std::uint32_t> storageIDs;
        OperationRun run = runOf([&] { return engine.getStorageIDs(&storageIDs); });
        run.unpacked = run.success && storageIDs == elementsOf(answer);
        return run;
    }

    std::string record(bool success, std::uint16_t /*responseCode*/,
                       const Answer& answer) const override
    {
        std::string list = "(null)";
        if (success) {
            list = "(";
            for (const std::uint32_t storageID : elementsOf(answer))
                list += fmt::format("{}{}", list.size() > 1 ? ", " : "", storageID);
            list += ")";
        }
        return fmt::format("getStorageIDs (result = {}, storageIDs = {})", resultText(success),
                           list);
    }

protected:
    ByteBuffer payload(std::size_t size) const override { return arrayOf(2, size); }
};

class GetObjectHandles final : public Operation {
public:
    GetObjectHandles()
        : Operation("GetObjectHandles", "getObjectHandles:objectHandles:", Kind::Dataset, 0x1007)
    {
    }

    OperationRun run(PTPCommunication& engine, const Answer& answer,
                     const std::filesystem::path& /*folder*/) const override
    {
        HandlesDict handles;
        OperationRun run = runOf([&] { return engine.getObjectHandles(0x00010001, handles); });
        const std::vector<std::uint32_t> sent = elementsOf(answer);
        run.unpacked = run.success && handles.size() == static_cast<qsizetype>(sent.size());
        for (const std::uint32_t number : sent)
            run.unpacked = run.unpacked && handles.contains(QString::number(number));
        return run;
    }

    std::string record(bool success, std::uint16_t /*responseCode*/,
                       const Answer& answer) const override
    {
        return fmt::format("getObjectHandles (result = {}, objectHandlesCount = {})",
                           resultText(success), success ? elementsOf(answer).size() : 0);
    }

protected:
    ByteBuffer payload(std::size_t size) const override { return arrayOf(3, size); }
};

class GetObjectPropValue final : public Operation {
public:
    GetObjectPropValue()
        : Operation("GetObjectPropValue",
                    "getObjectPropValue:propCode:objectPropValue:", Kind::Dataset, 0x9803)
    {
    }

    OperationRun run(PTPCommunication& engine, const Answer& /*answer*/,
                     const std::filesystem::path& /*folder*/) const override
    {
        ObjectPropValueObjectSize size;
        OperationRun run =
            runOf([&] { return engine.getObjectPropValue(testedHandle, 0xDC04, &size); });
        run.unpacked = size.value() == sentSize;
        return run;
    }

    std::string record(bool success, std::uint16_t /*responseCode*/,
                       const Answer& /*answer*/) const override
    {
        return fmt::format("getObjectPropValue (result = {}, objHdr = <07000000>, propVal = {})",
                           resultText(success), success ? sentSize : 0);
    }

protected:
    ByteBuffer payload(std::size_t size) const override
    {
        ByteBuffer bytes;
        appendLittleEndian(bytes, sentSize);
        bytes.resize(std::max(bytes.size(), size), 0xEE);
        return bytes;
    }

private:
    static constexpr std::uint64_t sentSize = 0x123456789;
};

class GetObjectInfo final : public Operation {
public:
    GetObjectInfo()
        : Operation("GetObjectInfo", "getObjectInfo:objectInfoData:", Kind::Dataset, 0x1008)
    {
    }

    OperationRun run(PTPCommunication& engine, const Answer& /*answer*/,
                     const std::filesystem::path& /*folder*/) const override
    {
        std::shared_ptr<ObjectInfoData> info;
        OperationRun run = runOf([&] { return engine.getObjectInfo(testedHandle, &info); });
        run.unpacked = run.success && info->objectCompressedSize() == 0x00ABCDEF;
        return run;
    }

    std::string record(bool success, std::uint16_t /*responseCode*/,
                       const Answer& /*answer*/) const override
    {
        // The name with its terminator, as it was sent.
        return fmt::format("getObjectInfo (result = {}, objHdr = <07000000>, fileName = {})",
                           resultText(success), success ? std::string("A.JPG", 6) : "(null)");
    }

protected:
    ByteBuffer payload(std::size_t size) const override
    {
        ByteBuffer bytes = ObjectInfoBytes{.fileName = {u"A.JPG\0", 6}}.bytes();
        bytes.erase(bytes.begin(), bytes.begin() + 12);
        bytes.resize(std::max(bytes.size(), size), 0xEE);
        return bytes;
    }
};

}  // namespace nivor::test
