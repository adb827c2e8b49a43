#include "simulator/ListingStyle.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

namespace nivor::test {

using testing::ElementsAre;

TEST(ListingStyleTest, ListsTheRootOnlyWhenThatIsItsStyle)
{
    auto card = std::make_shared<MemoryCard>();
    const std::uint32_t folder = card->addFolder(u"DCIM");
    const std::uint32_t file = card->addFile(u"A.JPG", 1, folder);
    SimulatorHost host(card, {.listing = ListingStyle::RootOnly});
    host.openSession();
    EXPECT_THAT(host.handles(), ElementsAre(folder));
    EXPECT_THAT(host.handles(0, folder), ElementsAre(file));
}

}  // namespace nivor::test
