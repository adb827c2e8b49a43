// The nine operations: one command each, one transaction, one line in the log.

#include "codes/ObjectFormatCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/ObjectPropValue.h"
#include "datasets/Thumbnail.h"
#include "foundation/ByteReader.h"
#include "foundation/Errors.h"
#include "foundation/ResultText.h"
#include "foundation/SystemConsole.h"
#include "ptp/CommandContainer.h"
#include "ptp/PTPCommunication.h"
#include "ptp/PTPTransactionCallback.h"

#include <fmt/format.h>

#include <QScopeGuard>

#include <algorithm>

namespace nivor {
namespace {

constexpr std::uint32_t sessionID = 1;
constexpr std::uint32_t allFormats = static_cast<std::uint32_t>(ObjectFormatCode::AllFormats);
constexpr std::uint32_t closeSessionTimeout = 3000;
constexpr std::uint32_t operationTimeout = 5000;

// Header, element count, one element.
constexpr std::size_t smallestStorageIDs = 20;
constexpr std::size_t arrayElementSize = 4;

// What a camera may answer, far beyond what any sends: an ObjectInfo is 2 KiB at most, a handle
// list of 4 MiB names a million objects, a larger thumbnail would not be kept.
constexpr std::chrono::milliseconds longestAnswer = std::chrono::seconds(60);
constexpr DatasetBounds smallDataset{.bytes = std::uint64_t{64} * 1024, .time = longestAnswer};
constexpr DatasetBounds handleList{.bytes = std::uint64_t{4} * 1024 * 1024, .time = longestAnswer};
constexpr DatasetBounds thumbnail{.bytes = Thumbnail::largestFile + containerHeaderSize,
                                  .time = longestAnswer};

// An object in memory is as large as its caller expects, and one more read.
DatasetBounds objectOf(std::uint64_t size)
{
    constexpr std::uint64_t margin = ReceiveBuffer::size + containerHeaderSize;
    return {.bytes = std::max(size, size + margin)};
}

std::string listText(const std::vector<std::uint32_t>& numbers)
{
    std::string text = "(";
    for (const std::uint32_t number : numbers)
        text += fmt::format("{}{}", text.size() > 1 ? ", " : "", number);
    return text + ")";
}

bool isOK(std::uint16_t responseCode)
{
    return responseCode == static_cast<std::uint16_t>(ResponseCode::OK);
}

}  // namespace

bool PTPCommunication::openSession(std::uint32_t timeout)
{
    constexpr Selector selector{"openSession:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::OpenSession, 1);
    command.append(sessionID);
    const bool success = exchange(command, timeout);
    if (success && isReceivedResponse() && isOK(lastResponseCode()))
        setSessionOpen(true);
    writeLog(selector.text(), fmt::format("openSession (result = {})", resultText(success)));
    return success;
}

bool PTPCommunication::closeSession()
{
    constexpr Selector selector{"closeSession"};
    const std::lock_guard guard(lock_);
    bool success = true;
    if (sessionOpen()) {
        CommandContainer command(OperationCode::CloseSession, 0);
        success = exchange(command, closeSessionTimeout);
        if (success)
            setSessionOpen(false);
    }
    writeLog(selector.text(), fmt::format("closeSession (result = {})", resultText(success)));
    return success;
}

bool PTPCommunication::getStorageIDs(std::vector<std::uint32_t>* storageIDs)
{
    constexpr Selector selector{"getStorageIDs:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::GetStorageIDs, 0);
    ReceiveSlot received;
    bool success = collect(command, 0, smallDataset, received);
    success =
        success && storageIDs != nullptr && received && received->size() >= smallestStorageIDs;
    if (success) {
        storageIDs->clear();
        ByteReader reader(*received, containerHeaderSize);
        const std::uint32_t count = reader.u32();
        for (std::uint32_t i = 0; i < count && reader.remaining() >= arrayElementSize; ++i)
            storageIDs->push_back(reader.u32());
    }
    writeLog(selector.text(),
             fmt::format("getStorageIDs (result = {}, storageIDs = {})", resultText(success),
                         success ? listText(*storageIDs) : "(null)"));
    return success;
}

bool PTPCommunication::getObjectHandles(std::uint32_t storageID, HandlesDict& objectHandles,
                                        std::uint32_t association)
{
    constexpr Selector selector{"getObjectHandles:objectHandles:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::GetObjectHandles, 3);
    command.append(storageID).append(allFormats).append(association);
    ReceiveSlot received;
    const bool success = collect(command, 0, handleList, received);
    if (success) {
        ByteReader reader(*received, containerHeaderSize);
        const std::uint32_t count = reader.u32();
        for (std::uint32_t i = 0; reader.ok() && i < count; ++i) {
            HandleBlock handle;
            const ByteView bytes = reader.bytes(arrayElementSize);
            if (!reader.ok())
                break;
            std::copy(bytes.begin(), bytes.end(), handle.bytes.begin());
            objectHandles.insert(handle.key(), handle);
        }
        if (!reader.ok())
            throw RangeError(fmt::format("getObjectHandles: {} handles announced, {} bytes sent",
                                         count, received->size()));
    }
    writeLog(selector.text(),
             fmt::format("getObjectHandles (result = {}, objectHandlesCount = {})",
                         resultText(success), objectHandles.size()));
    return success;
}

bool PTPCommunication::getObjectPropValue(const HandleBlock& handle, std::uint32_t propCode,
                                          ObjectPropValue* objectPropValue)
{
    constexpr Selector selector{"getObjectPropValue:propCode:objectPropValue:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::GetObjectPropValue, 2);
    command.append(handle).append(propCode);
    ReceiveSlot received;
    const bool success = collect(command, 0, smallDataset, received);
    if (success && objectPropValue != nullptr && received)
        static_cast<void>(objectPropValue->tryParse(*received));
    const std::uint64_t value =
        objectPropValue != nullptr ? objectPropValue->value().value_or(0) : 0;
    writeLog(selector.text(),
             fmt::format("getObjectPropValue (result = {}, objHdr = {}, propVal = {})",
                         resultText(success), handle.text(), value));
    return success;
}

bool PTPCommunication::getObjectInfo(const HandleBlock& handle,
                                     std::shared_ptr<ObjectInfoData>* objectInfoData)
{
    constexpr Selector selector{"getObjectInfo:objectInfoData:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::GetObjectInfo, 1);
    command.append(handle);
    ReceiveSlot received;
    bool success = collect(command, 0, smallDataset, received);
    std::string fileName = "(null)";
    if (success && objectInfoData != nullptr) {
        *objectInfoData = std::make_shared<ObjectInfoData>();
        success = ObjectInfoData::tryParse(*received, **objectInfoData);
        fileName = (*objectInfoData)->fileName().toStdString();
    }
    writeLog(selector.text(),
             fmt::format("getObjectInfo (result = {}, objHdr = {}, fileName = {})",
                         resultText(success), handle.text(), fileName));
    return success;
}

bool PTPCommunication::getObject(const HandleBlock& handle, std::uint64_t objectSize,
                                 ByteBuffer* objectBinaryData, PTPTransactionCallback* callback)
{
    constexpr Selector selector{"getObject:objectSize:objectBinaryData:callback:"};
    const std::lock_guard guard(lock_);
    bool success = false;
    if (callback != nullptr) {
        CommandContainer command(OperationCode::GetObject, 1);
        command.append(handle);
        success = executePTPTransaction(command.bytes(), nullptr, nullptr,
                                        objectSize + containerHeaderSize, callback, true,
                                        operationTimeout);
    } else {
        success = fetchWhole(OperationCode::GetObject, handle, objectSize, objectOf(objectSize),
                             objectBinaryData);
    }
    writeLog(
        selector.text(),
        fmt::format("getObject (result = {}, objHdr = {})", resultText(success), handle.text()));
    return success;
}

bool PTPCommunication::getThumb(const HandleBlock& handle, std::uint64_t objectSize,
                                ByteBuffer* objectBinaryData)
{
    constexpr Selector selector{"getThumb:objectSize:objectBinaryData:"};
    const std::lock_guard guard(lock_);
    const bool success =
        fetchWhole(OperationCode::GetThumb, handle, objectSize, thumbnail, objectBinaryData);
    writeLog(
        selector.text(),
        fmt::format("getThumb (result = {}, objHdr = {})", resultText(success), handle.text()));
    return success;
}

bool PTPCommunication::deleteObject(const HandleBlock& handle)
{
    constexpr Selector selector{"deleteObject:"};
    const std::lock_guard guard(lock_);
    CommandContainer command(OperationCode::DeleteObject, 2);
    command.append(handle).append(allFormats);
    bool success = exchange(command, operationTimeout);
    success = success && isOK(lastResponseCode());
    writeLog(selector.text(),
             fmt::format("deleteObject (result = {}, responseCode = {}, objHdr = {})",
                         resultText(success), lastResponseCode(), handle.text()));
    return success;
}

// Runs a transaction without a data phase. Should the camera send one, it is bounded all the same.
bool PTPCommunication::exchange(CommandContainer& command, std::uint32_t timeout)
{
    datasetBounds_ = smallDataset;
    const auto unbound = qScopeGuard([this] { datasetBounds_ = {}; });
    return executePTPTransaction(command.bytes(), nullptr, nullptr, 0, nullptr, false, timeout);
}

// Runs a transaction whose data is collected in memory.
bool PTPCommunication::collect(CommandContainer& command, std::uint64_t expectedSize,
                               const DatasetBounds& bounds, ReceiveSlot& received)
{
    datasetBounds_ = bounds;
    const auto unbound = qScopeGuard([this] { datasetBounds_ = {}; });
    return executePTPTransaction(command.bytes(), nullptr, &received, expectedSize, nullptr, true,
                                 operationTimeout);
}

// Collects an object or a thumbnail in memory and strips the container's header.
bool PTPCommunication::fetchWhole(OperationCode operation, const HandleBlock& handle,
                                  std::uint64_t objectSize, const DatasetBounds& bounds,
                                  ByteBuffer* objectBinaryData)
{
    CommandContainer command(operation, 1);
    command.append(handle);
    // The announced size is the camera's word: beyond 64 KiB room is made as the bytes come.
    ReceiveSlot received;
    const bool success = collect(command, objectSize + containerHeaderSize, bounds, received);
    if (!success || objectBinaryData == nullptr)
        return success;
    // The text says 13 and the test is the same: not one byte behind the header.
    if (received->size() <= containerHeaderSize) {
        writeToSystemConsole(
            fmt::format("Oh!!! receiveBuffer is length {} (< 13.)", received->size()));
        return false;
    }
    received->erase(received->begin(),
                    received->begin() + static_cast<std::ptrdiff_t>(containerHeaderSize));
    *objectBinaryData = std::move(*received);
    return true;
}

}  // namespace nivor
