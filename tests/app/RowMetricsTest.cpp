#include "app/RowMetrics.h"

#include <gtest/gtest.h>

using namespace nivor;

namespace {

TEST(RowMetrics, AFoldersRowIsSmallWhateverTheSliderSays)
{
    for (const double slider : {0.0, 37.6, 100.0})
        EXPECT_DOUBLE_EQ(rowHeight(true, slider, 100.0), 17.0);
}

TEST(RowMetrics, AFilesRowGoesFrom17To50)
{
    EXPECT_DOUBLE_EQ(rowHeight(false, 0.0, 100.0), 17.0);
    EXPECT_DOUBLE_EQ(rowHeight(false, 100.0, 100.0), 50.0);
}

TEST(RowMetrics, HalfwayTheFrameIs67By33AndAHalf)
{
    const double height = rowHeight(false, 50.0, 100.0);
    EXPECT_DOUBLE_EQ(height, 33.5);
    EXPECT_EQ(thumbnailFrame(height), QSizeF(67, 33.5));
}

TEST(RowMetrics, OnlyWholeStepsOfTheSliderCount)
{
    EXPECT_DOUBLE_EQ(rowHeight(false, 37.9, 100.0), rowHeight(false, 37.0, 100.0));
    EXPECT_LT(rowHeight(false, 37.9, 100.0), rowHeight(false, 38.0, 100.0));
}

}  // namespace
