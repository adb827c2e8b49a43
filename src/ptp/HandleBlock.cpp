#include "ptp/HandleBlock.h"

#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"

#include <fmt/format.h>

namespace nivor {

HandleBlock HandleBlock::fromNumber(std::uint32_t handle)
{
    HandleBlock block;
    putLittleEndian<std::uint32_t>(block.bytes, 0, handle);
    return block;
}

std::uint32_t HandleBlock::number() const
{
    return ByteReader(bytes).u32();
}

QString HandleBlock::key() const
{
    return QString::number(number());
}

std::string HandleBlock::text() const
{
    return fmt::format("<{:02x}{:02x}{:02x}{:02x}>", bytes[0], bytes[1], bytes[2], bytes[3]);
}

}  // namespace nivor
