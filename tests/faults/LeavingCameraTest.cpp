// A camera that leaves, at every step of a connection.
#include "faults/FaultFixture.h"

#include <cerrno>
#include <functional>

using namespace nivor;
using namespace nivor::test;

namespace {

using Operation = OperationCode;
using Strings = std::vector<std::string>;
using Step = ConnectFailure::Step;

struct ConnectRow {
    std::string name;
    FaultPlan faults{};
    bool result = false;
    bool connected = false;
    Step step = Step::None;
    UsbResult cause = UsbResult::NoDevice;
    Strings log{};
    /// Below libusb: what the device file does. Such a row is not played in memory.
    std::function<void(SimulatedOverUsbfs&)> below{};
    MockedUsbDescription description{};

    friend void PrintTo(const ConnectRow& row, std::ostream* out) { *out << row.name; }
};

/// From that call across the seam on, all of them find the camera gone.
FaultPlan goneFrom(UsbStep first)
{
    FaultPlan plan;
    for (const UsbStep step :
         {UsbStep::SerialNumber, UsbStep::DeviceOpen, UsbStep::ConfigurationDescriptor,
          UsbStep::SetConfiguration, UsbStep::FindInterface, UsbStep::InterfaceOpen,
          UsbStep::WritePipe, UsbStep::ReadPipe, UsbStep::CancelRequest,
          UsbStep::GetDeviceStatus}) {
        if (step >= first)
            plan.usb(step, UsbResult::NoDevice);
    }
    return plan;
}

FaultPlan leavesAtSession(fault::Vanish how)
{
    return FaultPlan().on(Operation::OpenSession, how);
}

const Strings noDevice{"Could not open device (error: e00002c0)"};
const Strings noConfiguration{"Could not set active configuration (error: e00002c0)"};
const Strings noInterface{"Could not open interface (error: e00002c0)"};
const Strings noSession{"openSession (result = fail)", "openSession (result = fail)",
                        "openSession (result = fail)", "Disconnect", "Could not open session"};

/// What the seam itself tells of.
std::vector<ConnectRow> stepRows()
{
    return {
        {.name = "BeforeItsSerialNumber",
         .faults = goneFrom(UsbStep::SerialNumber),
         .step = Step::OpenDevice,
         .log = noDevice},
        {.name = "BeforeItIsOpened",
         .faults = goneFrom(UsbStep::DeviceOpen),
         .step = Step::OpenDevice,
         .log = noDevice},
        {.name = "BeforeItsConfigurationIsRead",
         .faults = goneFrom(UsbStep::ConfigurationDescriptor),
         .result = true,
         .step = Step::ReadConfiguration,
         .log = noConfiguration},
        {.name = "BeforeItIsConfigured",
         .faults = goneFrom(UsbStep::SetConfiguration),
         .step = Step::OpenInterface,
         .log = noInterface},
        {.name = "BeforeItsInterfaceIsFound",
         .faults = goneFrom(UsbStep::FindInterface),
         .step = Step::OpenInterface,
         .log = noInterface},
        {.name = "BeforeItsInterfaceIsOpened",
         .faults = goneFrom(UsbStep::InterfaceOpen),
         .step = Step::OpenInterface,
         .log = noInterface},
        {.name = "BeforeTheFirstCommand",
         .faults = goneFrom(UsbStep::WritePipe),
         .step = Step::OpenSession,
         .log = noSession},
        {.name = "BeforeTheFirstRead",
         .faults = goneFrom(UsbStep::ReadPipe),
         .step = Step::OpenSession,
         .log = noSession},
    };
}

/// What a camera does of its own accord, behind either seam.
std::vector<ConnectRow> sessionRows()
{
    std::vector<ConnectRow> rows{
        {.name = "AtTheFirstCommand",
         .faults = leavesAtSession({}),
         .step = Step::OpenSession,
         .log = noSession},
        {.name = "BehindTheResponse",
         .faults = FaultPlan().on(Operation::GetStorageIDs, fault::Vanish{}),
         .result = true,
         .connected = true,
         .log = {"openSession (result = success)", "Connect"}},
    };
    for (const std::uint64_t bytes : {0U, 1U, 4U}) {
        rows.push_back({.name = "AfterByte" + std::to_string(bytes) + "OfTheResponse",
                        .faults = leavesAtSession({.afterBytes = bytes}),
                        .step = Step::OpenSession,
                        .log = noSession});
    }
    return rows;
}

/// Six bytes tell that it is a response, and more is not looked at. Below libusb they may be lost.
std::vector<ConnectRow> responseRows()
{
    std::vector<ConnectRow> rows;
    for (const std::uint64_t bytes : {6U, 8U, 11U}) {
        rows.push_back({.name = "AfterByte" + std::to_string(bytes) + "OfTheResponse",
                        .faults = leavesAtSession({.afterBytes = bytes}),
                        .result = true,
                        .connected = true,
                        .log = {"Connect"}});
    }
    return rows;
}

/// What the kernel tells libusb.
std::vector<ConnectRow> kernelRows()
{
    MockedUsbDescription unconfigured;
    unconfigured.isConfigured = false;
    MockedUsbDescription alternate;
    alternate.interfaces.front().alternateSetting = 1;
    const auto leavesAt = [](unsigned long request) {
        return [request](SimulatedOverUsbfs& usb) { usb.usbfs().leaveAt(request); };
    };
    return {
        {.name = "AsItsFileIsOpened",
         .step = Step::OpenDevice,
         // libusb does not tell this from any other failure to open the file.
         .cause = UsbResult::IOError,
         .log = {"Could not open device (error: e00002ca)"},
         .below =
             [](SimulatedOverUsbfs& usb) { MockedUsbBus::failNextOpen(usb.deviceNode(), ENODEV); }},
        {.name = "AsItsCapabilitiesAreAsked",
         .step = Step::OpenInterface,
         .log = noInterface,
         .below = leavesAt(USBDEVFS_GET_CAPABILITIES)},
        {.name = "AsItIsConfigured",
         .step = Step::OpenInterface,
         .log = noInterface,
         .below = leavesAt(USBDEVFS_SETCONFIGURATION),
         .description = unconfigured},
        {.name = "AsItsInterfaceIsClaimed",
         .step = Step::OpenInterface,
         .log = noInterface,
         .below = leavesAt(USBDEVFS_CLAIMINTERFACE)},
        {.name = "AsItsSettingIsChosen",
         .step = Step::OpenInterface,
         .log = noInterface,
         .below = leavesAt(USBDEVFS_SETINTERFACE),
         .description = alternate},
        {.name = "AsTheFirstTransferIsSubmitted",
         .step = Step::OpenInterface,
         .log = noInterface,
         .below = leavesAt(USBDEVFS_SUBMITURB)},
    };
}

class LeavingDuringConnect : public FaultCells<ConnectRow> { };

TEST_P(LeavingDuringConnect, EndsTheAttemptAndSaysAtWhichStep)
{
    begin(seam());
    ASSERT_TRUE(stage->plug(card, {.faults = row().faults}, row().description));
    const ProcessResources before = ProcessResources::now();
    if (row().below)
        row().below(stage->usb());
    EXPECT_EQ(engine->connect(anyVendorID), row().result);
    EXPECT_EQ(engine->connected(), row().connected);
    EXPECT_TRUE(logTells(row().log));
    EXPECT_EQ(engine->lastConnectFailure().step, row().step);
    if (row().step != Step::None) {
        EXPECT_EQ(engine->lastConnectFailure().result, row().cause);
        EXPECT_EQ(engine->usbInterface(), nullptr);
    }
    if (row().connected) {
        const auto result = load();
        EXPECT_EQ(result.end, ContentLoader::End::NoStorage);
        EXPECT_EQ(result.failure, goneText);
    }
    engine->disconnect();
    EXPECT_EQ(engine->usbDevice(), nullptr);
    EXPECT_TRUE((ProcessResources{before.descriptors, before.threads + 1}.areAllThatIsHeld()))
        << "before: " << before << ", now: " << ProcessResources::now();
}

INSTANTIATE_TEST_SUITE_P(Steps, LeavingDuringConnect,
                         ::testing::Combine(::testing::Values(Seam::Memory),
                                            ::testing::ValuesIn(stepRows())),
                         nameOfCell<ConnectRow>);
INSTANTIATE_TEST_SUITE_P(Session, LeavingDuringConnect,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(sessionRows())),
                         nameOfCell<ConnectRow>);
INSTANTIATE_TEST_SUITE_P(Response, LeavingDuringConnect,
                         ::testing::Combine(::testing::Values(Seam::Memory),
                                            ::testing::ValuesIn(responseRows())),
                         nameOfCell<ConnectRow>);
INSTANTIATE_TEST_SUITE_P(Kernel, LeavingDuringConnect,
                         ::testing::Combine(::testing::Values(Seam::Usbfs),
                                            ::testing::ValuesIn(kernelRows())),
                         nameOfCell<ConnectRow>);

}  // namespace
