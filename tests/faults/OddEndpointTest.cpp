#include "faults/FaultedConnection.h"

#include <gmock/gmock.h>

using namespace nivor;
using namespace nivor::test;
using ::testing::Contains;

namespace {

// wMaxPacketSize 0: the kernel takes no request for such an endpoint.
TEST(OddEndpoint, EndsTheConnectionWithARecord)
{
    FaultedConnection connection(WireKind::Libusb, 1, 0);
    EXPECT_FALSE(connection.engine.connect(anyVendorID));
    EXPECT_FALSE(connection.engine.connected());
    EXPECT_EQ(connection.engine.usbDevice(), nullptr);
    EXPECT_THAT(connection.log.messagesOf("PTPCommunication connect:"),
                Contains("Could not open interface (error: e00002ca)"));
}

// Two transactions per microframe, in the bits above the size.
TEST(OddEndpoint, TakesTheUpperBitsForNoSize)
{
    FaultedConnection connection(WireKind::Libusb, 1, 0x0800 | 512);
    EXPECT_TRUE(connection.engine.connect(anyVendorID));
    EXPECT_TRUE(connection.nextIsSound());
}

}  // namespace
