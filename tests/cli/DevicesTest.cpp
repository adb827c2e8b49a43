#include "cli/CliFixture.h"

using namespace nivor;
using namespace nivor::test;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Devices : public CliFixture { };
class Doctor : public CliFixture { };
class Opening : public CliFixture { };

TEST_F(Devices, EachCameraIsALine)
{
    attach();
    const RunResult result = run({"devices"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("fffe:0001  serial number SIMULATED-0001"));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Devices, AsJson)
{
    attach();
    const RunResult result = run({"--json", "devices"});
    const json cameras = json::parse(result.out);
    ASSERT_EQ(cameras.size(), 1U);
    EXPECT_EQ(cameras[0]["vendorID"], "0xfffe");
    EXPECT_EQ(cameras[0]["productID"], "0x0001");
    EXPECT_EQ(cameras[0]["serialNumber"], "SIMULATED-0001");
}

TEST_F(Devices, ASerialNumberCannotSteerTheTerminal)
{
    attach({.identity = {.serialNumber = "A\x1b[2J"}});
    EXPECT_THAT(run({"devices"}).out, HasSubstr("A␛[2J"));
}

TEST_F(Devices, OnlyThoseOfTheVendor)
{
    attach();
    EXPECT_EQ(run({"devices", "--vendor-id", "0xFFFE"}).exitCode, 0);
    const RunResult result = run({"devices", "--vendor-id", "0x1234", "--json"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(json::parse(result.out), json::array());
    EXPECT_EQ(result.err, "nivor: no camera of vendor 0x1234 was found.\n");
}

TEST_F(Devices, NoneIsNoCamera)
{
    const RunResult result = run({"devices"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("no camera was found"));
}

TEST_F(Doctor, WorksWithoutACamera)
{
    const RunResult result = run({"doctor"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("none. Is it connected"));
    EXPECT_THAT(result.out, HasSubstr(logDirectory().string()));
    EXPECT_THAT(result.out, HasSubstr("NIVOR File Transfer 1.2.3"));
    EXPECT_THAT(result.out, HasSubstr("libusb 1.0.26"));
}

TEST_F(Doctor, SaysWhenThereCanBeNoLog)
{
    EXPECT_TRUE(json::parse(run({"doctor", "--json"}).out)["logProblem"].is_null());
    writeText(destination.path() / "file", "mine");
    const RunResult result = run({"doctor", "--log-directory", folder() + "/file/below"});
    EXPECT_THAT(result.out, HasSubstr("/file/below\n  can't be written: Not a directory\n"));
}

TEST_F(Doctor, ShowsWhoHoldsACameraAndWhoMayOpenIt)
{
    attach();
    devices.push_back({.location = {1, 7, "high speed (480 Mb/s)", "/dev/bus/usb/001/007"},
                       .vendorID = 0x1234,
                       .productID = 0x0002,
                       .interfaces = {stillImageTriple},
                       .isStillImage = true,
                       .readable = true,
                       .writable = false,
                       .holders = {{4711, "gvfsd-gphoto2"}}});
    const RunResult result = run({"doctor"});
    EXPECT_THAT(result.out, HasSubstr("bus 001 device 007  1234:0002"));
    EXPECT_THAT(result.out, HasSubstr("high speed (480 Mb/s)"));
    EXPECT_THAT(result.out, HasSubstr("may only be read"));
    EXPECT_THAT(result.out, HasSubstr("/dev/bus/usb/001/007"));
    EXPECT_THAT(result.out, HasSubstr("process 4711 (gvfsd-gphoto2)"));
    EXPECT_THAT(result.out, HasSubstr("fffe:0001"));

    const json findings = json::parse(run({"doctor", "--json"}).out);
    EXPECT_EQ(findings["cameras"][0]["accepted"], true);
    EXPECT_EQ(findings["usb"][0]["holders"][0]["pid"], 4711);
    EXPECT_EQ(findings["usb"][0]["writable"], false);
    EXPECT_EQ(findings["versions"]["Qt"], "6.4.2");
}

TEST_F(Doctor, ASimulationHasNoOtherDevices)
{
    attach();
    devices.emplace_back().vendorID = 0xABCD;
    EXPECT_THAT(run({"doctor", "--simulate"}).out, ::testing::Not(HasSubstr("abcd")));
    EXPECT_TRUE(simulation.isWanted);
}

TEST_F(Opening, NoCamera)
{
    for (const std::vector<std::string>& line :
         {std::vector<std::string>{"list"}, {"copy", folder()}, {"delete", "x", "--yes"}}) {
        const RunResult result = run(line);
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, HasSubstr("no camera was found"));
    }
}

TEST_F(Opening, AnotherVendorIsNoCamera)
{
    attach();
    const RunResult result = run({"list", "--vendor-id", "0x1234"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, HasSubstr("no camera of vendor 0x1234"));
    EXPECT_THAT(result.err, HasSubstr("0xfffe"));

    defaultVendorID = 0x1234;
    EXPECT_EQ(run({"list"}).exitCode, 3);
    EXPECT_EQ(run({"list", "--vendor-id", "any"}).exitCode, 0);
}

TEST_F(Opening, EachReasonIsGivenInWords)
{
    struct Case {
        UsbStep step;
        UsbResult result;
        const char* text;
    };
    const std::vector<Case> cases{
        {UsbStep::DeviceOpen, UsbResult::NotPrivileged, "the device could not be opened"},
        {UsbStep::InterfaceOpen, UsbResult::ExclusiveAccess,
         "the still-image interface could not be opened"},
        {UsbStep::ConfigurationDescriptor, UsbResult::IOError,
         "the device's configuration could not be read"},
    };
    for (const Case& failure : cases) {
        host = std::make_shared<SimulatedHost>();
        attachWith(FaultPlan().usb(failure.step, failure.result));
        const RunResult result = run({"list"});
        EXPECT_EQ(result.exitCode, 4);
        EXPECT_THAT(result.err, HasSubstr(failure.text));
        EXPECT_THAT(result.err, HasSubstr(toText(failure.result)));
        EXPECT_THAT(result.out, IsEmpty());
    }
}

TEST_F(Opening, TheCameraIsLeftInOrder)
{
    attach();
    run({"list"});
    EXPECT_FALSE(camera->hasOpenSession());
    EXPECT_FALSE(engine->connected());
}

}  // namespace
