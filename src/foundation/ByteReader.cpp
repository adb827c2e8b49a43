#include "foundation/ByteReader.h"

namespace nivor {

ByteReader::ByteReader(ByteView bytes, std::size_t offset)
    : bytes_(bytes)
    , offset_(offset)
    , ok_(offset <= bytes.size())
{
}

ByteView ByteReader::bytes(std::size_t count)
{
    if (!ok_ || count > remaining()) {
        ok_ = false;
        return {};
    }
    const ByteView taken = bytes_.subspan(offset_, count);
    offset_ += count;
    return taken;
}

template <typename Integer> Integer ByteReader::littleEndian()
{
    Integer value = 0;
    const ByteView taken = bytes(sizeof(Integer));
    for (std::size_t i = 0; i < taken.size(); ++i)
        value = static_cast<Integer>(value | static_cast<Integer>(Integer{taken[i]} << (8 * i)));
    return value;
}

std::uint8_t ByteReader::u8()
{
    return littleEndian<std::uint8_t>();
}
std::uint16_t ByteReader::u16()
{
    return littleEndian<std::uint16_t>();
}
std::uint32_t ByteReader::u32()
{
    return littleEndian<std::uint32_t>();
}
std::uint64_t ByteReader::u64()
{
    return littleEndian<std::uint64_t>();
}

}  // namespace nivor
