#include "app/ThumbnailSlider.h"

#include <gtest/gtest.h>

#include <limits>

using namespace nivor;

namespace {

TEST(ThumbnailSlider, KeepsADoubleExactlyUntilItIsMoved)
{
    ThumbnailSlider slider;
    int moves = 0;
    slider.setAction([&moves] { ++moves; });
    slider.setDoubleValue(37.6123);
    EXPECT_DOUBLE_EQ(slider.doubleValue(), 37.6123);
    EXPECT_EQ(moves, 0);
    slider.setValue(500);
    EXPECT_DOUBLE_EQ(slider.doubleValue(), 50.0);
    EXPECT_EQ(moves, 1);
}

TEST(ThumbnailSlider, StaysInItsRange)
{
    ThumbnailSlider slider;
    slider.setDoubleValue(1e9);
    EXPECT_DOUBLE_EQ(slider.doubleValue(), 100.0);
    slider.setDoubleValue(-1);
    EXPECT_DOUBLE_EQ(slider.doubleValue(), 0.0);
    slider.setDoubleValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_DOUBLE_EQ(slider.doubleValue(), 0.0);
}

}  // namespace
