#include "ptp/ContainerHeader.h"

#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"

namespace nivor {

ContainerHeader ContainerHeader::parse(ByteView bytes)
{
    ByteReader reader(bytes);
    ContainerHeader header;
    header.length = reader.u32();
    header.type = reader.u16();
    header.code = reader.u16();
    header.transactionID = reader.u32();
    return header;
}

std::uint64_t ContainerHeader::completeSize(std::uint64_t expectedSize) const
{
    const bool isStandardType = type <= static_cast<std::uint16_t>(ContainerType::Event);
    return length == containerLengthUnknown && isStandardType ? expectedSize : length;
}

}  // namespace nivor
