#include "ptp/CommandContainer.h"

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"

#include <cassert>

namespace nivor {
namespace {

constexpr std::size_t transactionIDOffset = 8;
constexpr std::size_t parameterSize = 4;

}  // namespace

CommandContainer::CommandContainer(OperationCode operation, std::size_t parameterCount)
{
    const std::size_t length = containerHeaderSize + parameterSize * parameterCount;
    bytes_.reserve(length);
    appendLittleEndian(bytes_, static_cast<std::uint32_t>(length));
    appendLittleEndian(bytes_, static_cast<std::uint16_t>(ContainerType::Command));
    appendLittleEndian(bytes_, static_cast<std::uint16_t>(operation));
    appendLittleEndian(bytes_, std::uint32_t{0});
}

CommandContainer& CommandContainer::append(std::uint32_t parameter)
{
    appendLittleEndian(bytes_, parameter);
    return *this;
}

CommandContainer& CommandContainer::append(const HandleBlock& handle)
{
    bytes_.insert(bytes_.end(), handle.bytes.begin(), handle.bytes.end());
    return *this;
}

ByteBuffer& CommandContainer::bytes()
{
    assert(ByteReader(bytes_).u32() == bytes_.size());
    return bytes_;
}

void stampTransactionID(ByteBuffer& container, std::uint32_t transactionID)
{
    assert(container.size() >= containerHeaderSize);
    putLittleEndian<std::uint32_t>(container, transactionIDOffset, transactionID);
}

}  // namespace nivor
