#include "simulator/PtpResponder.h"

#include "codes/ObjectPropCode.h"
#include "foundation/ByteWriter.h"
#include "simulator/PtpDatasets.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nivor {

namespace {

constexpr std::uint32_t allStorages = 0xFFFFFFFF;
constexpr std::uint32_t allAssociations = 0;
constexpr std::uint32_t rootOnly = 0xFFFFFFFF;
constexpr std::uint32_t allObjects = 0xFFFFFFFF;
constexpr std::uint32_t noTransaction = 0xFFFFFFFF;

ResponseCode responseTo(CardRemoval removal)
{
    switch (removal) {
    case CardRemoval::Removed:
        return ResponseCode::OK;
    case CardRemoval::NotFound:
        return ResponseCode::InvalidObjectHandle;
    case CardRemoval::Protected:
        return ResponseCode::ObjectWriteProtected;
    case CardRemoval::ReadOnlyCard:
        return ResponseCode::StoreReadOnly;
    case CardRemoval::NotEmpty:
        return ResponseCode::AccessDenied;
    case CardRemoval::Failed:
        break;
    }
    return ResponseCode::GeneralError;
}

}  // namespace

PtpResponder::PtpResponder(std::shared_ptr<Card> card, const CameraIdentity& identity,
                           ListingStyle listing, std::uint32_t storageID)
    : card_(std::move(card))
    , identity_(identity)
    , listing_(listing)
    , storageID_(storageID)
{
}

PtpAnswer PtpResponder::answer(const PtpCommand& command)
{
    if (command.transactionID == noTransaction)
        return PtpAnswer::refuse(ResponseCode::InvalidTransactionID);
    switch (command.operation) {
    case OperationCode::GetDeviceInfo:
        return getDeviceInfo();
    case OperationCode::OpenSession:
        return openSession(command);
    default:
        break;
    }
    if (!hasOpenSession())
        return PtpAnswer::refuse(ResponseCode::SessionNotOpen);
    if (command.transactionID == 0)
        return PtpAnswer::refuse(ResponseCode::InvalidTransactionID);
    return answerInSession(command);
}

PtpAnswer PtpResponder::answerInSession(const PtpCommand& command)
{
    const std::uint32_t first = command.parameters[0];
    switch (command.operation) {
    case OperationCode::CloseSession:
        closeSession();
        return PtpAnswer::ok();
    case OperationCode::GetStorageIDs:
        return getStorageIDs();
    case OperationCode::GetStorageInfo:
        return getStorageInfo(first);
    case OperationCode::GetNumObjects:
        return getNumObjects(command);
    case OperationCode::GetObjectHandles:
        return getObjectHandles(command);
    case OperationCode::GetObjectInfo:
        return getObjectInfo(first);
    case OperationCode::GetObject:
        return getObject(first);
    case OperationCode::GetThumb:
        return getThumb(first);
    case OperationCode::DeleteObject:
        return deleteObject(command);
    case OperationCode::GetObjectPropValue:
        return getObjectPropValue(command);
    default:
        return PtpAnswer::refuse(ResponseCode::OperationNotSupported);
    }
}

PtpAnswer PtpResponder::openSession(const PtpCommand& command)
{
    if (hasOpenSession())
        return {.response = ResponseCode::SessionAlreadyOpen, .parameters = {sessionID_}};
    if (command.parameters[0] == 0)
        return PtpAnswer::refuse(ResponseCode::InvalidParameter);
    sessionID_ = command.parameters[0];
    return PtpAnswer::ok();
}

PtpAnswer PtpResponder::getDeviceInfo() const
{
    return PtpAnswer::with(encodeDeviceInfo(identity_));
}

PtpAnswer PtpResponder::getStorageIDs() const
{
    return PtpAnswer::with(encodeArray(std::array{storageID_}));
}

PtpAnswer PtpResponder::getStorageInfo(std::uint32_t storageID) const
{
    if (storageID != storageID_)
        return PtpAnswer::refuse(ResponseCode::InvalidStorageID);
    return PtpAnswer::with(encodeStorageInfo(*card_));
}

ResponseCode PtpResponder::select(const PtpCommand& command,
                                  std::vector<std::uint32_t>& selected) const
{
    const std::uint32_t storage = command.parameters[0];
    const std::uint32_t format = command.parameters[1];
    const std::uint32_t association = command.parameters[2];
    if (storage != storageID_ && storage != allStorages)
        return ResponseCode::InvalidStorageID;

    if (association == rootOnly
        || (association == allAssociations && listing_ == ListingStyle::RootOnly)) {
        selected = card_->childrenOf(noHandle);
    } else if (association == allAssociations) {
        selected = card_->handles();
    } else {
        const auto folder = card_->object(association);
        if (!folder)
            return ResponseCode::InvalidObjectHandle;
        if (!folder->isFolder())
            return ResponseCode::InvalidParentObject;
        selected = card_->childrenOf(association);
    }
    if (format != static_cast<std::uint16_t>(ObjectFormatCode::AllFormats)) {
        std::erase_if(selected, [&](std::uint32_t handle) {
            const auto object = card_->object(handle);
            return !object || static_cast<std::uint16_t>(object->format) != format;
        });
    }
    return ResponseCode::OK;
}

PtpAnswer PtpResponder::getNumObjects(const PtpCommand& command) const
{
    std::vector<std::uint32_t> selected;
    if (const ResponseCode code = select(command, selected); code != ResponseCode::OK)
        return PtpAnswer::refuse(code);
    return {.parameters = {static_cast<std::uint32_t>(selected.size())}};
}

PtpAnswer PtpResponder::getObjectHandles(const PtpCommand& command) const
{
    std::vector<std::uint32_t> selected;
    if (const ResponseCode code = select(command, selected); code != ResponseCode::OK)
        return PtpAnswer::refuse(code);
    return PtpAnswer::with(encodeArray(selected));
}

PtpAnswer PtpResponder::getObjectInfo(std::uint32_t handle) const
{
    const auto object = card_->details(handle);
    if (!object)
        return PtpAnswer::refuse(ResponseCode::InvalidObjectHandle);
    return PtpAnswer::with(encodeObjectInfo(*object, storageID_));
}

PtpAnswer PtpResponder::getObject(std::uint32_t handle) const
{
    const auto object = card_->object(handle);
    if (!object || object->isFolder())
        return PtpAnswer::refuse(ResponseCode::InvalidObjectHandle);

    // What can't be read is refused now; once the data phase has begun it is too late for that.
    std::array<std::uint8_t, 1> probe{};
    if (object->size != 0 && !card_->read(handle, 0, probe))
        return PtpAnswer::refuse(ResponseCode::AccessDenied);

    auto body = [card = card_, handle](std::uint64_t offset, std::span<std::uint8_t> out) {
        return card->read(handle, offset, out);
    };
    return {.data = PtpAnswer::Data{.body = std::move(body), .bodySize = object->size}};
}

PtpAnswer PtpResponder::getThumb(std::uint32_t handle) const
{
    if (!card_->object(handle))
        return PtpAnswer::refuse(ResponseCode::InvalidObjectHandle);
    std::optional<ByteBuffer> bytes = card_->thumbnail(handle);
    if (!bytes)
        return PtpAnswer::refuse(ResponseCode::NoThumbnailPresent);
    return PtpAnswer::with(std::move(*bytes));
}

PtpAnswer PtpResponder::deleteObject(const PtpCommand& command) const
{
    const std::uint32_t handle = command.parameters[0];
    const std::uint32_t format = command.parameters[1];
    // Emptying the whole card, or all of one format, with one command is optional; not here.
    if (format != 0)
        return PtpAnswer::refuse(ResponseCode::SpecificationByFormatUnsupported);
    if (handle == allObjects)
        return PtpAnswer::refuse(ResponseCode::ParameterNotSupported);
    return PtpAnswer::only(responseTo(card_->remove(handle)));
}

PtpAnswer PtpResponder::getObjectPropValue(const PtpCommand& command) const
{
    const auto object = card_->object(command.parameters[0]);
    if (!object)
        return PtpAnswer::refuse(ResponseCode::InvalidObjectHandle);
    if (command.parameters[1] != static_cast<std::uint16_t>(ObjectPropCode::ObjectSize))
        return PtpAnswer::refuse(ResponseCode::InvalidObjectPropCode);
    ByteBuffer value;
    appendLittleEndian(value, object->size);
    return PtpAnswer::with(std::move(value));
}

}  // namespace nivor
