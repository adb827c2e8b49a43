#include "simulator/AnswerComposer.h"

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteWriter.h"
#include "simulator/PtpDatasets.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace nivor {

namespace {

void appendHeader(ByteBuffer& buffer, std::uint64_t payloadSize, ContainerType type,
                  std::uint16_t code, std::uint32_t transactionID, const HeaderErrors& errors)
{
    const std::uint64_t length = containerHeaderSize + payloadSize;
    const auto honestLength = length < containerLengthUnknown ? static_cast<std::uint32_t>(length)
                                                              : containerLengthUnknown;
    appendLittleEndian(buffer, errors.length.value_or(honestLength));
    appendLittleEndian(buffer, errors.type.value_or(static_cast<std::uint16_t>(type)));
    appendLittleEndian(buffer, code);
    appendLittleEndian(buffer, transactionID);
}

void falsify(ByteBuffer& dataset, const fault::UntrueObjectInfo& untrue)
{
    if (dataset.size() < objectInfoThumbnailSizeOffset + sizeof(std::uint32_t))
        return;
    if (untrue.objectSize)
        putLittleEndian(std::span<std::uint8_t>(dataset), objectInfoSizeOffset, *untrue.objectSize);
    if (untrue.thumbnailSize)
        putLittleEndian(std::span<std::uint8_t>(dataset), objectInfoThumbnailSizeOffset,
                        *untrue.thumbnailSize);
}

/// Sends the first bytes of a transfer in one of their own.
void split(std::vector<InTransfer>& transfers, std::size_t at)
{
    if (transfers.empty() || at == 0 || at >= transfers.front().head.size())
        return;
    InTransfer& rest = transfers.front();
    const auto middle = rest.head.begin() + static_cast<std::ptrdiff_t>(at);
    InTransfer first{.head = ByteBuffer(rest.head.begin(), middle)};
    rest.head.erase(rest.head.begin(), middle);
    if (rest.limit)
        *rest.limit -= std::min<std::uint64_t>(*rest.limit, at);
    transfers.insert(transfers.begin(), std::move(first));
}

}  // namespace

ByteBuffer AnswerComposer::response(ResponseCode code) const
{
    return responseContainer(PtpAnswer::only(code), {});
}

ByteBuffer AnswerComposer::responseContainer(const PtpAnswer& answer,
                                             const AnswerShape& shape) const
{
    const auto& parameters =
        shape.responseParameters ? *shape.responseParameters : answer.parameters;
    ByteBuffer container;
    appendHeader(container, sizeof(std::uint32_t) * parameters.size(), ContainerType::Response,
                 static_cast<std::uint16_t>(answer.response),
                 shape.transactionID.value_or(command_.transactionID), shape.responseHeader);
    for (const std::uint32_t parameter : parameters)
        appendLittleEndian(container, parameter);
    return container;
}

InTransfer AnswerComposer::dataTransfer(const PtpAnswer::Data& data, const AnswerShape& shape) const
{
    InTransfer transfer{.body = data.body, .bodySize = data.bodySize, .limit = shape.dataLimit};
    appendHeader(transfer.head, data.dataset.size() + data.bodySize, ContainerType::Data,
                 static_cast<std::uint16_t>(command_.operation),
                 shape.transactionID.value_or(command_.transactionID), shape.dataHeader);
    transfer.head.insert(transfer.head.end(), data.dataset.begin(), data.dataset.end());
    transfer.zeroPacket = !shape.zeroPacketMissing;
    transfer.responseOnFailure = response(ResponseCode::IncompleteTransfer);
    return transfer;
}

std::vector<InTransfer> AnswerComposer::compose(PtpAnswer answer, const AnswerShape& shape) const
{
    std::vector<InTransfer> transfers;
    if (shape.silent)
        return transfers;
    if (shape.halt != InTransfer::Halt::No) {
        transfers.push_back({.halt = shape.halt});
    } else if (shape.raw) {
        for (const ByteBuffer& bytes : *shape.raw)
            transfers.push_back({.head = bytes, .zeroPacket = !shape.zeroPacketMissing});
    } else {
        if (answer.data && command_.operation == OperationCode::GetObjectInfo)
            falsify(answer.data->dataset, shape.objectInfo);
        if (shape.refusal)
            answer.response = shape.refusal->code;

        if (answer.data) {
            for (unsigned i = 0; i < shape.dataPhases; ++i)
                transfers.push_back(dataTransfer(*answer.data, shape));
        }
        const bool responseFirst =
            shape.refusal && shape.refusal->place == fault::Refuse::Place::BeforeData;
        const bool glues = shape.responseGlued && shape.responses > 0 && !transfers.empty();
        if (glues)
            transfers.back().tail = responseContainer(answer, shape);
        if (answer.data && shape.zeroPacketExtra)
            transfers.emplace_back();
        for (unsigned i = glues ? 1 : 0; i < shape.responses; ++i) {
            transfers.insert(responseFirst ? transfers.begin() : transfers.end(),
                             InTransfer{.head = responseContainer(answer, shape)});
        }
        split(transfers, shape.splitAt);
    }
    if (shape.vanish && shape.vanish->afterBytes && !transfers.empty())
        transfers.front().vanishAfter = shape.vanish->afterBytes;
    if (shape.eventFirst) {
        ByteBuffer event;
        appendHeader(event, 0, ContainerType::Event, static_cast<std::uint16_t>(*shape.eventFirst),
                     0, {});
        transfers.insert(transfers.begin(), InTransfer{.head = std::move(event)});
    }
    for (InTransfer& transfer : transfers)
        transfer.transactionID = command_.transactionID;
    return transfers;
}

}  // namespace nivor
