#include "simulator/FaultPlan.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

namespace nivor::test {

TEST(OccurrencesTest, CountFromOneWithBothEndsIncluded)
{
    const auto struck = [](Occurrences occurrences) {
        std::vector<std::uint64_t> list;
        for (std::uint64_t n = 1; n <= 5; ++n) {
            if (occurrences.contain(n))
                list.push_back(n);
        }
        return list;
    };
    EXPECT_THAT(struck(Occurrences::each()), testing::ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(struck(Occurrences::nth(2)), testing::ElementsAre(2));
    EXPECT_THAT(struck(Occurrences::firstTimes(2)), testing::ElementsAre(1, 2));
    EXPECT_THAT(struck(Occurrences::from(4)), testing::ElementsAre(4, 5));
}

TEST(FaultPlanTest, LeavesTheFirstOpenSessionsUnanswered)
{
    SimulatorHost host(std::make_shared<MemoryCard>(),
                       {.faults = FaultPlan().on(OperationCode::OpenSession, fault::Silence{},
                                                 Occurrences::firstTimes(2))});
    for (int i = 0; i < 2; ++i) {
        host.send(OperationCode::OpenSession, {1});
        EXPECT_EQ(host.read(5120, brief).result, UsbResult::TransactionTimeout);
        EXPECT_FALSE(host.camera->hasOpenSession());
    }
    host.openSession();
    EXPECT_EQ(host.camera->record().requestsOf(OperationCode::OpenSession), 3U);
}

}  // namespace nivor::test
