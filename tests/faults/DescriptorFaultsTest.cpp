// Cameras whose descriptors say something else than what they are, below the real libusb.
#include "faults/FaultFixture.h"

#include <functional>

using namespace nivor;
using namespace nivor::test;

namespace {

using Strings = std::vector<std::string>;
using Step = ConnectFailure::Step;

struct DescriptorRow {
    std::string name;
    std::vector<MockedInterface> interfaces{MockedInterface{}};
    std::function<void(ByteBuffer&)> spoil{};
    std::size_t packetSize = 512;  ///< the camera's own
    Step step = Step::None;        ///< where the connection fails; None = it does not
    UsbResult cause = UsbResult::Success;
    Strings log{"Connect"};

    friend void PrintTo(const DescriptorRow& row, std::ostream* out) { *out << row.name; }
};

constexpr MockedEndpoint bulkIn{0x81};
constexpr MockedEndpoint bulkOut{0x02};
constexpr MockedEndpoint interruptIn{0x83, 3, 28};

MockedInterface withEndpoints(std::vector<MockedEndpoint> endpoints)
{
    MockedInterface interface;
    interface.endpoints = std::move(endpoints);
    return interface;
}

DescriptorRow withPackets(std::uint16_t size, std::size_t cameraSize)
{
    return {.name = "PacketsOf" + std::to_string(size) + "Bytes",
            .interfaces = {withEndpoints({{0x81, 2, size}, {0x02, 2, size}, interruptIn})},
            .packetSize = cameraSize};
}

DescriptorRow withoutInterface(std::string name, MockedInterface interface)
{
    return {.name = std::move(name),
            .interfaces = {std::move(interface)},
            .step = Step::FindDevice,
            .cause = UsbResult::NotFound,
            .log = {"Device not found"}};
}

DescriptorRow withoutPipes(std::string name, std::vector<MockedEndpoint> endpoints)
{
    return {.name = std::move(name),
            .interfaces = {withEndpoints(std::move(endpoints))},
            .step = Step::OpenInterface,
            .cause = UsbResult::NotFound,
            .log = {"Could not open interface (error: e00002f0)"}};
}

std::vector<DescriptorRow> descriptorRows()
{
    MockedInterface printer;
    printer.interfaceClass = 7;
    MockedInterface otherSubClass;
    otherSubClass.interfaceSubClass = 2;
    MockedInterface otherProtocol;
    otherProtocol.interfaceProtocol = 2;
    MockedInterface storage = withEndpoints({{0x84}, {0x05}});
    storage.number = 1;
    storage.interfaceClass = 8;
    storage.interfaceSubClass = 6;
    storage.interfaceProtocol = 80;
    MockedInterface second = withEndpoints({{0x84}, {0x05}, {0x86, 3, 28}});
    second.number = 1;
    MockedInterface number7;
    number7.number = 7;
    MockedInterface alternate;
    alternate.alternateSetting = 1;
    MockedInterface empty = withEndpoints({});

    // 18 bytes of device descriptor, 9 of configuration, 9 of interface, 7 of each endpoint.
    const auto byte = [](std::size_t at, std::uint8_t value) {
        return [at, value](ByteBuffer& bytes) { bytes.at(at) = value; };
    };
    const auto cut = [](std::size_t size) {
        return [size](ByteBuffer& bytes) { bytes.resize(size); };
    };
    const auto unseen = [](std::string name, std::function<void(ByteBuffer&)> spoil) {
        return DescriptorRow{.name = std::move(name),
                             .spoil = std::move(spoil),
                             .step = Step::FindDevice,
                             .cause = UsbResult::NotFound,
                             .log = {"Device not found"}};
    };
    return {
        {.name = "AreGood"},

        withoutInterface("OfAPrinter", printer),
        withoutInterface("OfAnotherSubClass", otherSubClass),
        withoutInterface("OfAnotherProtocol", otherProtocol),
        {.name = "OfACameraAndACardReader", .interfaces = {MockedInterface{}, storage}},
        {.name = "OfTwoStillImageInterfaces", .interfaces = {MockedInterface{}, second}},
        {.name = "OfInterfaceSeven", .interfaces = {number7}},
        {.name = "OfAnAlternateSettingAlone", .interfaces = {alternate}},
        {.name = "OfAnEmptySettingBeforeTheRealOne",
         .interfaces = {empty, alternate},
         .step = Step::OpenInterface,
         .cause = UsbResult::NotFound,
         .log = {"Could not open interface (error: e00002f0)"}},

        {.name = "WithoutInterruptEndpoint", .interfaces = {withEndpoints({bulkIn, bulkOut})}},
        {.name = "WithThePipesTurnedRound",
         .interfaces = {withEndpoints({bulkOut, bulkIn, interruptIn})}},
        {.name = "WithTheInterruptEndpointFirst",
         .interfaces = {withEndpoints({interruptIn, bulkIn, bulkOut})}},
        withoutPipes("WithoutEndpoints", {}),
        withoutPipes("WithoutBulkIn", {bulkOut, interruptIn}),
        withoutPipes("WithoutBulkOut", {bulkIn, interruptIn}),
        withoutPipes("WithTwoBulkInPipesAndNoOther", {bulkIn, {0x84}}),
        withoutPipes("WithIsochronousPipes", {{0x81, 1}, {0x02, 1}, interruptIn}),

        withPackets(8, 8),
        withPackets(64, 64),
        withPackets(1024, 1024),
        // The kernel takes no request for such an endpoint.
        {.name = "PacketsOf0Bytes",
         .interfaces = {withEndpoints({{0x81, 2, 0}, {0x02, 2, 0}, interruptIn})},
         .step = Step::OpenInterface,
         .cause = UsbResult::IOError,
         .log = {"Could not open interface (error: e00002ca)"}},
        withPackets(1, 512),
        withPackets(3, 512),
        withPackets(100, 512),
        withPackets(511, 512),
        withPackets(2047, 512),
        {.name = "WithPipesOfDifferentPackets",
         .interfaces = {withEndpoints({{0x81, 2, 64}, {0x02, 2, 8}, interruptIn})},
         .packetSize = 64},

        unseen("CutInTheDevice", cut(10)),
        unseen("CutInTheConfiguration", cut(18 + 5)),
        unseen("CutInTheInterface", cut(18 + 9 + 4)),
        unseen("OfNoLength", byte(18 + 9, 0)),
        unseen("OfAnInterfaceOfOneByte", byte(18 + 9, 1)),
        {.name = "ThatClaimMoreInterfacesThanThereAre", .spoil = byte(18 + 4, 9)},
        unseen("ThatClaimMoreConfigurationsThanThereAre", byte(17, 9)),
        {.name = "ThatClaimAGreatTotalLength", .spoil = byte(18 + 3, 0xFF)},
    };
}

class DescriptorFaults : public FaultCells<DescriptorRow> { };

TEST_P(DescriptorFaults, EndInAConnectionThatWorksOrInAReason)
{
    const std::uint32_t folder = card->addFolder(u"DCIM");
    // Lengths around whole packets of every size above, headers included.
    std::vector<std::uint32_t> files;
    for (const std::uint64_t size : {1U, 52U, 499U, 500U, 501U, 1012U, 5108U, 100'000U})
        files.push_back(card->addFile(u"F.JPG", size, folder));
    MockedUsbDescription description;
    description.interfaces = row().interfaces;
    description.spoil = row().spoil;

    begin(seam());
    const bool isSeen =
        stage->plug(card, {.maxPacketSize = row().packetSize}, std::move(description));
    const bool connects = row().step == Step::None;
    if (connects) {
        ASSERT_TRUE(isSeen);
    }
    EXPECT_EQ(engine->connect(anyVendorID), connects);
    EXPECT_EQ(engine->connected(), connects);
    EXPECT_EQ(engine->lastConnectFailure().step, row().step);
    EXPECT_EQ(engine->lastConnectFailure().result, row().cause);
    EXPECT_TRUE(logTells(row().log));
    if (!connects)
        return;

    const auto result = load();
    EXPECT_EQ(result.end, ContentLoader::End::Complete) << result.failure;
    ASSERT_EQ(result.listing.objects.size(), 1U + files.size());
    const CopyResult copied = copy(result.listing);
    EXPECT_EQ(copied.copiedCount(), files.size());
    for (std::size_t i = 0; i < copied.files.size(); ++i) {
        EXPECT_TRUE(holdsObject(copied.files[i].path, files[i],
                                copied.files[i].object->objectCompressedSize()))
            << copied.files[i].failure;
    }
}

INSTANTIATE_TEST_SUITE_P(Cells, DescriptorFaults,
                         ::testing::Combine(::testing::Values(Seam::Usbfs),
                                            ::testing::ValuesIn(descriptorRows())),
                         nameOfCell<DescriptorRow>);

}  // namespace
