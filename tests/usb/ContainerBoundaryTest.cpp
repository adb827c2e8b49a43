#include "usb/ContainerBoundary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace nivor {
namespace {

constexpr std::size_t packet = 512;

/// Feeds so many bytes of a container that announces `length`; answers how many it took until its
/// end was told.
std::size_t feed(ContainerBoundary& boundary, std::uint32_t length, std::size_t count)
{
    ByteBuffer bytes(count);
    for (std::size_t i = 0; i < std::min<std::size_t>(count, 4); ++i)
        bytes[i] = static_cast<std::uint8_t>(length >> (8 * i));
    std::size_t taken = 0;
    while (taken < count && !boundary.isReached()) {
        const std::size_t piece = std::min(count - taken, boundary.limit());
        boundary.advance(ByteView(bytes).subspan(taken, piece));
        taken += piece;
    }
    return taken;
}

TEST(ContainerBoundary, IsReachedAtTheEndOfWholePackets)
{
    ContainerBoundary boundary(packet);
    EXPECT_EQ(feed(boundary, 1024, 1036), 1024U);
    EXPECT_TRUE(boundary.isReached());
}

TEST(ContainerBoundary, IsNotReachedBefore)
{
    ContainerBoundary boundary(packet);
    EXPECT_EQ(feed(boundary, 1024, 1023), 1023U);
    EXPECT_FALSE(boundary.isReached());
    EXPECT_EQ(boundary.limit(), 1U);
}

TEST(ContainerBoundary, LetsTheLengthComeByteForByte)
{
    ContainerBoundary boundary(packet);
    // 0x00000200, least significant byte first
    for (const std::uint8_t byte : ByteBuffer{0x00, 0x02, 0x00, 0x00}) {
        EXPECT_GE(boundary.limit(), 1U);
        boundary.advance({&byte, 1});
    }
    EXPECT_EQ(boundary.limit(), 508U);
}

TEST(ContainerBoundary, LeavesOtherLengthsToTheirShortPacket)
{
    ContainerBoundary boundary(packet);
    EXPECT_EQ(feed(boundary, 1023, 2000), 2000U);
    EXPECT_FALSE(boundary.isReached());
    EXPECT_EQ(boundary.limit(), std::numeric_limits<std::size_t>::max());
}

TEST(ContainerBoundary, TakesNoLengthThatIsUnknownOrTooSmall)
{
    for (const std::uint32_t length : {0xFFFFFFFFU, 0U}) {
        ContainerBoundary boundary(packet);
        EXPECT_EQ(feed(boundary, length, 5000), 5000U);
        EXPECT_FALSE(boundary.isReached());
    }
}

TEST(ContainerBoundary, HeedsThePacketSize)
{
    ContainerBoundary boundary(1024);
    EXPECT_EQ(feed(boundary, 1536, 2000), 2000U);
    boundary.restart();
    EXPECT_EQ(feed(boundary, 2048, 3000), 2048U);
}

TEST(ContainerBoundary, BeginsAnewWhereItIsTold)
{
    ContainerBoundary boundary(packet);
    feed(boundary, 512, 512);
    ASSERT_TRUE(boundary.isReached());
    boundary.restart();
    EXPECT_FALSE(boundary.isReached());
    EXPECT_EQ(feed(boundary, 1536, 4000), 1536U);
}

}  // namespace
}  // namespace nivor
