#include "simulator/MemoryCard.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

namespace nivor::test {

TEST(PtpCommandTest, StallsOnBytesThatAreNoCommand)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    const std::vector<ByteBuffer> malformed{
        {},
        {1, 2, 3},
        container(16, 1, 0x1002, 1),                      // length beyond the bytes
        container(11, 1, 0x1002, 1, {1}),                 // length short of them
        container(16, 2, 0x1002, 1, {1}),                 // a data container
        container(36, 1, 0x1002, 1, {1, 2, 3, 4, 5, 6}),  // too many parameters
        {13, 0, 0, 0, 1, 0, 2, 16, 1, 0, 0, 0, 1},        // a quarter of a parameter
    };
    for (const ByteBuffer& bytes : malformed) {
        EXPECT_EQ(host.interface->writePipe(bytes), UsbResult::Success);
        EXPECT_EQ(host.read().result, UsbResult::PipeStalled);
    }
    host.openSession();
    EXPECT_EQ(host.camera->record().commands.size(), malformed.size() + 1);
    EXPECT_EQ(host.camera->record().commands.at(1), malformed.at(1));
}

}  // namespace nivor::test
