#include "Targets.h"

#include "FuzzedInput.h"
#include "Require.h"
#include "codes/StillImageClass.h"
#include "ptp/ContainerHeader.h"
#include "usb/ContainerBoundary.h"

#include <algorithm>
#include <set>
#include <vector>

namespace nivor::fuzz {
namespace {

/// The little-endian number in `size` bytes at `offset`, or 0 when they are not all there.
std::uint32_t fieldAt(ByteView bytes, std::size_t offset, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && offset + size <= bytes.size(); ++i)
        value |= std::uint32_t{bytes[offset + i]} << (8 * i);
    return value;
}

void classifyFirstRead(ByteView firstRead)
{
    const ContainerHeader header = ContainerHeader::parse(firstRead);
    require(header.length == fieldAt(firstRead, 0, 4), "the length is that of the wire");
    require(header.type == fieldAt(firstRead, 4, 2), "the type is that of the wire");
    require(header.code == fieldAt(firstRead, 6, 2), "the code is that of the wire");
    require(header.transactionID == fieldAt(firstRead, 8, 4), "the ID is that of the wire");

    constexpr std::uint64_t expected = 0x1234567890;
    const bool isUnknown = header.length == containerLengthUnknown && header.type <= 4;
    require(header.completeSize(expected) == (isUnknown ? expected : header.length),
            "the expected size counts where the length can't be told");
}

/// How a stream of bytes comes in.
struct Arrival {
    std::vector<std::size_t> sizes;  ///< of the pieces, again and again
    std::set<std::size_t>
        shortEnds;  ///< where in the stream a short packet ends a container; its end is one
};

/// Where in the stream the boundary says that a container ends.
std::vector<std::size_t> endsFound(ByteView stream, std::size_t maxPacketSize,
                                   const Arrival& arrival)
{
    ContainerBoundary boundary(maxPacketSize);
    std::vector<std::size_t> ends;
    std::size_t offset = 0;
    for (std::size_t i = 0; offset < stream.size(); ++i) {
        require(boundary.limit() > 0, "a container that goes on takes another byte");
        const auto nextEnd = arrival.shortEnds.upper_bound(offset);
        const std::size_t untilEnd = *nextEnd - offset;
        const std::size_t count =
            std::min({std::max<std::size_t>(arrival.sizes[i % arrival.sizes.size()], 1),
                      boundary.limit(), untilEnd});
        boundary.advance(stream.subspan(offset, count));
        offset += count;
        if (boundary.isReached())
            ends.push_back(offset);
        if (boundary.isReached() || arrival.shortEnds.contains(offset))
            boundary.restart();
    }
    return ends;
}

/// The same, worked out from the whole stream at once.
std::vector<std::size_t> endsIn(ByteView stream, std::size_t maxPacketSize,
                                const std::set<std::size_t>& shortEnds)
{
    std::vector<std::size_t> ends;
    std::size_t begin = 0;
    while (begin < stream.size()) {
        const auto nextEnd = shortEnds.upper_bound(begin);
        std::size_t end = *nextEnd;
        const ByteView left = stream.subspan(begin, end - begin);
        const std::uint32_t length = fieldAt(left, 0, 4);
        if (length >= containerHeaderSize && length != containerLengthUnknown
            && length % maxPacketSize == 0 && length <= left.size()) {
            end = begin + length;
            ends.push_back(end);
        }
        begin = end;
    }
    return ends;
}

}  // namespace

void fuzzContainer(ByteView input)
{
    classifyFirstRead(input);

    FuzzedInput choices(input);
    const std::size_t maxPacketSize = std::size_t{8} << choices.choice(8);
    Arrival inPieces;
    for (std::size_t i = choices.choice(8) + 1; i > 0; --i)
        inPieces.sizes.push_back(choices.u8());
    for (std::size_t i = choices.choice(8); i > 0; --i)
        inPieces.shortEnds.insert(choices.u16());
    const ByteView stream = choices.rest();
    inPieces.shortEnds.erase(inPieces.shortEnds.lower_bound(stream.size()),
                             inPieces.shortEnds.end());
    inPieces.shortEnds.insert(stream.size());

    const Arrival byteByByte{.sizes = {1}, .shortEnds = inPieces.shortEnds};
    const auto expected = endsIn(stream, maxPacketSize, inPieces.shortEnds);
    require(endsFound(stream, maxPacketSize, inPieces) == expected,
            "the ends do not depend on the pieces");
    require(endsFound(stream, maxPacketSize, byteByByte) == expected,
            "the ends are found byte by byte as well");
}

}  // namespace nivor::fuzz
