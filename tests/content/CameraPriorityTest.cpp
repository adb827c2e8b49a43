#include "content/CameraPriority.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

using namespace nivor;

namespace {

TEST(CameraPriority, NobodyWaitsForACameraThatIsFree)
{
    CameraPriority priority;
    EXPECT_FALSE(priority.isClaimed());
    priority.waitWhileClaimed([] { return false; });
}

TEST(CameraPriority, TheListingGoesOnWhenTheLastClaimIsReleased)
{
    CameraPriority priority;
    std::optional<CameraPriority::Claim> first(priority);
    std::optional<CameraPriority::Claim> second(priority);
    std::atomic<int> asked{0};
    std::atomic<bool> wentOn{false};
    std::thread listing([&] {
        priority.waitWhileClaimed([&] {
            ++asked;
            return false;
        });
        wentOn = true;
    });
    const auto waitUntilAskedAgain = [&] {
        const int before = asked;
        while (asked == before)
            std::this_thread::yield();
    };
    waitUntilAskedAgain();
    first.reset();
    waitUntilAskedAgain();
    EXPECT_TRUE(priority.isClaimed());
    EXPECT_FALSE(wentOn);
    second.reset();
    listing.join();
    EXPECT_TRUE(wentOn);
    EXPECT_FALSE(priority.isClaimed());
}

TEST(CameraPriority, AListingThatIsToEndNeedNotWait)
{
    CameraPriority priority;
    const CameraPriority::Claim claim(priority);
    std::atomic<bool> givesUp{false};
    std::atomic<int> asked{0};
    std::thread listing([&] {
        priority.waitWhileClaimed([&] {
            ++asked;
            return givesUp.load();
        });
    });
    while (asked == 0)
        std::this_thread::yield();
    givesUp = true;
    listing.join();
}

}  // namespace
