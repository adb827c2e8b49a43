#include "content/ByteCount.h"

#include <gtest/gtest.h>

using namespace nivor;
using namespace std::chrono_literals;

namespace {

TEST(ByteCount, UnitsAreDecimal)
{
    EXPECT_EQ(byteCountText(0), "0 B");
    EXPECT_EQ(byteCountText(999), "999 B");
    EXPECT_EQ(byteCountText(1000), "1.0 kB");
    EXPECT_EQ(byteCountText(999'949), "999.9 kB");
    EXPECT_EQ(byteCountText(999'950), "1.0 MB");
    EXPECT_EQ(byteCountText(48 << 20), "50.3 MB");
    EXPECT_EQ(byteCountText(5'000'000'000), "5.0 GB");
    EXPECT_EQ(byteCountText(12'000'000'000'000), "12000.0 GB");
    EXPECT_EQ(amountText(1'000'000, 5'000'000'000), "0.0 of 5.0 GB");
    EXPECT_EQ(amountText(0, 0), "0 of 0 B");
    EXPECT_EQ(rateText(23'440'000), "23.4 MB/s");
    EXPECT_EQ(countText(1, "file"), "1 file");
    EXPECT_EQ(countText(0, "file"), "0 files");
}

TEST(ByteCount, Durations)
{
    EXPECT_EQ(durationText(0s), "0:00");
    EXPECT_EQ(durationText(67s), "1:07");
    EXPECT_EQ(durationText(3723s), "1:02:03");
}

}  // namespace
