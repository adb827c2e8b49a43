#include "foundation/SpinUntil.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace nivor;

TEST(SpinUntil, AsksOnceWhenItIsSoAlready)
{
    int asked = 0;
    EXPECT_TRUE(spinUntil([&asked] { return ++asked > 0; }));
    EXPECT_EQ(asked, 1);
}

TEST(SpinUntil, GivesUpAfterAMoment)
{
    int asked = 0;
    EXPECT_FALSE(spinUntil([&asked] { return ++asked < 0; }));
    EXPECT_GE(asked, 2);
}

TEST(SpinUntil, SeesWhatItsLastQuestionSays)
{
    // Not so while it may ask again, but so at the very end.
    const auto end = std::chrono::steady_clock::now() + spinTime;
    EXPECT_TRUE(spinUntil([end] { return std::chrono::steady_clock::now() >= end; }));
}

}  // namespace
