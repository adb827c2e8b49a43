#include "InMemoryCamera.h"

#include "codes/ContainerType.h"
#include "codes/OperationCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"
#include "foundation/SpinUntil.h"

#include <algorithm>
#include <cstring>

namespace nivor::bench {
namespace {

// Small enough to stay in the cache: what is measured is the engine, not this memory.
constexpr std::size_t blockSize = 128 << 10;

ByteBuffer header(std::uint32_t length, ContainerType type, std::uint16_t code,
                  std::uint32_t transactionID)
{
    ByteBuffer bytes;
    appendLittleEndian(bytes, length);
    appendLittleEndian(bytes, static_cast<std::uint16_t>(type));
    appendLittleEndian(bytes, code);
    appendLittleEndian(bytes, transactionID);
    return bytes;
}

// The dataset of a picture named IMG_0001.JPG with both dates (ISO 15740, 5.5.2).
ByteBuffer objectInfo()
{
    ByteBuffer dataset(52, 0);
    putLittleEndian<std::uint32_t>(dataset, 0, 0x00010001);  // StorageID
    putLittleEndian<std::uint16_t>(dataset, 4, 0x3801);      // ObjectFormat
    putLittleEndian<std::uint32_t>(dataset, 8, 3'000'000);   // ObjectCompressedSize
    for (const std::string_view text :
         {std::string_view("IMG_0001.JPG\0", 13), std::string_view("20240501T093000\0", 16),
          std::string_view("20240501T093000\0", 16)}) {
        dataset.push_back(static_cast<std::uint8_t>(text.size()));
        for (const char character : text)
            appendLittleEndian(dataset, static_cast<std::uint16_t>(character));
    }
    dataset.push_back(0);  // Keywords
    return dataset;
}

}  // namespace

InMemoryInterface::InMemoryInterface(std::uint64_t objectSize)
    : objectSize_(objectSize)
    , block_(blockSize, 0x5A)
{
}

UsbResult InMemoryInterface::writePipe(ByteView bytes)
{
    ByteReader reader(bytes, 6);
    const std::uint16_t code = reader.u16();
    const std::uint32_t transactionID = reader.u32();
    const std::lock_guard guard(mutex_);
    head_.clear();
    headOffset_ = 0;
    bodyLeft_ = 0;
    if (code == static_cast<std::uint16_t>(OperationCode::GetObjectInfo)) {
        const ByteBuffer dataset = objectInfo();
        head_ = header(static_cast<std::uint32_t>(containerHeaderSize + dataset.size()),
                       ContainerType::Data, code, transactionID);
        head_.insert(head_.end(), dataset.begin(), dataset.end());
    }
    if (code == static_cast<std::uint16_t>(OperationCode::GetObject)) {
        const std::uint64_t length = objectSize_ + containerHeaderSize;
        head_ = header(static_cast<std::uint32_t>(std::min<std::uint64_t>(length, 0xFFFFFFFF)),
                       ContainerType::Data, code, transactionID);
        bodyLeft_ = objectSize_;
    }
    response_ = header(containerHeaderSize, ContainerType::Response,
                       static_cast<std::uint16_t>(ResponseCode::OK), transactionID);
    isAnswerReady_ = true;
    commanded_.notify_all();
    return UsbResult::Success;
}

UsbResult InMemoryInterface::readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                                      const UsbTimeouts& timeouts)
{
    spinUntil([this] { return isAnswerReady_.load(); });
    std::unique_lock guard(mutex_);
    if (!commanded_.wait_for(guard, timeouts.noData, [this] { return !response_.empty(); })) {
        received = 0;
        return UsbResult::TransactionTimeout;
    }
    received = produce(buffer);
    return UsbResult::Success;
}

std::size_t InMemoryInterface::produce(std::span<std::uint8_t> buffer)
{
    if (headOffset_ == head_.size() && bodyLeft_ == 0) {
        const std::size_t size = response_.size();
        std::copy(response_.begin(), response_.end(), buffer.begin());
        response_.clear();
        isAnswerReady_ = false;
        return size;
    }
    std::size_t filled = std::min(buffer.size(), head_.size() - headOffset_);
    std::copy_n(head_.begin() + static_cast<std::ptrdiff_t>(headOffset_), filled, buffer.begin());
    headOffset_ += filled;
    while (bodyLeft_ > 0 && filled < buffer.size()) {
        const std::size_t piece = static_cast<std::size_t>(
            std::min<std::uint64_t>({bodyLeft_, buffer.size() - filled, block_.size()}));
        std::memcpy(buffer.data() + filled, block_.data(), piece);
        filled += piece;
        bodyLeft_ -= piece;
    }
    return filled;
}

}  // namespace nivor::bench
