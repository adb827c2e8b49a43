#include "support/EngineFixture.h"
#include "usb/CameraAgent.h"

#include <chrono>
#include <future>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::int32_t vendor = 0x1234;
constexpr std::int32_t otherVendor = 0x4321;
constexpr char connectEvent[] = "PTPCommunication connect:";

class Connection : public EngineFixture {
protected:
    void answerSession() { pipes().answerWrite(1, {response(0x2001)}); }

    std::vector<std::string> messages() const
    {
        std::vector<std::string> texts;
        for (const LogRecord& record : log.records())
            texts.push_back(record.message);
        return texts;
    }
};

class TalkativeAgent : public CameraAgent {
public:
    std::string release() override
    {
        ++calls;
        return complaint;
    }
    int calls = 0;
    std::string complaint;
};

TEST_F(Connection, BeginsDisconnectedWithOneRecord)
{
    EXPECT_THAT(messages(), ElementsAre("closeSession (result = success)", "Disconnect"));
    EXPECT_EQ(log.last().event, "PTPCommunication disconnect");
    EXPECT_FALSE(engine.connected());
    EXPECT_EQ(engine.connectedDeviceProductId(), 0);
    EXPECT_EQ(engine.connectedDeviceSerialNumber(), std::nullopt);
    EXPECT_EQ(engine.transactionID(), 0U);
}

TEST_F(Connection, OpensDeviceInterfaceAndSession)
{
    answerSession();
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_TRUE(engine.connected());
    EXPECT_TRUE(engine.sessionOpen());
    EXPECT_TRUE(device->isOpen);
    EXPECT_TRUE(pipes().isOpen);
    EXPECT_THAT(device->configurationsSet, ElementsAre(1));
    EXPECT_EQ(pipes().written().front()[8], 1);  // OpenSession carries transaction ID 1
    EXPECT_EQ(log.last(), (LogRecord{connectEvent, "Connect"}));
    EXPECT_EQ(engine.connectedDeviceSerialNumber(), "SN-1");
}

TEST_F(Connection, TakesTheFirstOfTwoCameras)
{
    const std::shared_ptr<ScriptedDevice> second = host->attach(0x1234, 0x0002);
    answerSession();
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    EXPECT_EQ(engine.connectedDeviceProductId(), 0x0001);
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_EQ(engine.usbDevice(), device);
    EXPECT_FALSE(second->isOpen);
}

TEST_F(Connection, PassesOverOtherMakers)
{
    host->attached.clear();
    host->attach(0x4321, 0x0009);
    const std::shared_ptr<ScriptedDevice> ours = host->attach(0x1234, 0x0002);
    ours->interface->answerWrite(1, {response(0x2001)});
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_EQ(engine.usbDevice(), ours);
    EXPECT_EQ(engine.connectedDeviceProductId(), 0x0002);
}

TEST_F(Connection, TakesAnyMakerWhenNoneIsAskedFor)
{
    answerSession();
    EXPECT_EQ(engine.existsDevice(anyVendorID), 2);
    EXPECT_TRUE(engine.connect(anyVendorID));
}

TEST_F(Connection, FindsNothingOfAnotherMaker)
{
    EXPECT_EQ(engine.existsDevice(otherVendor), 0);
    EXPECT_FALSE(engine.connect(otherVendor));
    EXPECT_EQ(log.last(), (LogRecord{connectEvent, "Device not found"}));
    EXPECT_EQ(engine.lastConnectFailure().step, ConnectFailure::Step::FindDevice);
    EXPECT_FALSE(device->isOpen);
}

TEST_F(Connection, TellsAKnownCameraFromAnother)
{
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    EXPECT_EQ(engine.existsDevice(vendor), 1);
    device->serial = "SN-2";
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    EXPECT_EQ(engine.existsDevice(vendor), 1);
    host->attached.front().productID = 0x0007;
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    host->attached.clear();
    EXPECT_EQ(engine.existsDevice(vendor), 0);
}

TEST_F(Connection, RemembersACameraWithoutASerialNumber)
{
    device->serial = std::nullopt;
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    EXPECT_EQ(engine.connectedDeviceSerialNumber(), "");
    EXPECT_EQ(engine.existsDevice(vendor), 1);
}

TEST_F(Connection, TakesASerialNumberOfUpTo511Bytes)
{
    device->serial = std::string(511, 'x');
    EXPECT_EQ(PTPCommunication::getSerialNumber(*device).size(), 511U);
    device->serial = std::string(512, 'x');
    EXPECT_EQ(PTPCommunication::getSerialNumber(*device), "");
}

TEST_F(Connection, SeesAnAttachedCameraAsAnotherAfterADisconnect)
{
    answerSession();
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_EQ(engine.existsDevice(vendor), 1);
    pipes().answerWrite(1, {response(0x2001)});
    engine.disconnect();
    EXPECT_EQ(engine.existsDevice(vendor), 2);
}

TEST_F(Connection, AssumesTheCameraIsThereWhileAnOperationRuns)
{
    host->attached.clear();
    std::promise<void> taken;
    std::promise<void> release;
    std::future<void> holder = std::async(std::launch::async, [&] {
        const std::lock_guard guard(engine.lock());
        taken.set_value();
        release.get_future().wait();
    });
    taken.get_future().wait();
    const int searches = host->searches;
    EXPECT_EQ(engine.existsDevice(vendor), 1);
    EXPECT_EQ(host->searches, searches);
    release.set_value();
    holder.get();
    EXPECT_EQ(engine.existsDevice(vendor), 0);
}

TEST_F(Connection, AsksForPresenceWithoutOpeningOrRecording)
{
    const std::size_t records = log.records().size();
    EXPECT_EQ(engine.existsDevice(vendor), 2);
    EXPECT_EQ(log.records().size(), records);
    EXPECT_FALSE(device->isOpen);
}

TEST_F(Connection, FailsWhenTheDeviceCanNotBeOpened)
{
    device->openResult = UsbResult::NotPrivileged;
    EXPECT_FALSE(engine.connect(vendor));
    EXPECT_EQ(log.last(), (LogRecord{connectEvent, "Could not open device (error: e00002c1)"}));
    EXPECT_EQ(engine.usbDevice(), nullptr);
    EXPECT_EQ(engine.lastConnectFailure().step, ConnectFailure::Step::OpenDevice);
    EXPECT_EQ(engine.lastConnectFailure().result, UsbResult::NotPrivileged);
    EXPECT_EQ(engine.lastConnectFailure().location.address, 5U);
}

TEST_F(Connection, AnswersYesWithoutAConnectionWhenTheConfigurationIsUnreadable)
{
    device->configurationResult = UsbResult::IOError;
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_FALSE(engine.connected());
    EXPECT_EQ(log.last(),
              (LogRecord{connectEvent, "Could not set active configuration (error: e00002ca)"}));
    EXPECT_TRUE(device->isOpen);
    EXPECT_EQ(engine.usbInterface(), nullptr);
}

TEST_F(Connection, ClosesALeftOpenDeviceBeforeTheNextAttempt)
{
    device->configurationResult = UsbResult::IOError;
    EXPECT_TRUE(engine.connect(vendor));
    device->configurationResult = UsbResult::Success;
    answerSession();
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_TRUE(engine.connected());
    EXPECT_EQ(device->closeCount, 1);
}

TEST_F(Connection, GoesOnWhenTheConfigurationCanNotBeSet)
{
    device->setConfigurationResult = UsbResult::ExclusiveAccess;
    answerSession();
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_TRUE(engine.connected());
}

TEST_F(Connection, FailsWhenTheInterfaceCanNotBeOpened)
{
    pipes().openResult = UsbResult::ExclusiveAccess;
    EXPECT_FALSE(engine.connect(vendor));
    EXPECT_EQ(log.last(), (LogRecord{connectEvent, "Could not open interface (error: e00002c5)"}));
    EXPECT_EQ(engine.usbInterface(), nullptr);
    EXPECT_EQ(engine.usbDevice(), nullptr);
    EXPECT_EQ(device->closeCount, 1);
}

TEST_F(Connection, FailsWhenThereIsNoInterface)
{
    device->findResult = UsbResult::NotFound;
    EXPECT_FALSE(engine.connect(vendor));
    EXPECT_EQ(log.last().message, "Could not open interface (error: e00002f0)");
    EXPECT_EQ(device->closeCount, 1);
}

TEST_F(Connection, OpensASessionAtTheThirdAttempt)
{
    pipes().answer({.bytes = response(0x2001), .afterWrites = 3});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(engine.connect(vendor));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 2s);
    EXPECT_EQ(pipes().written().size(), 3U);
    EXPECT_EQ(log.last().message, "Connect");
}

TEST_F(Connection, DisconnectsAfterThreeFailedSessions)
{
    // A failing pipe ends each attempt at once; the order of the records is what counts.
    for (unsigned attempt = 1; attempt <= 3; ++attempt)
        pipes().answer({.bytes = {}, .result = UsbResult::IOError, .afterWrites = attempt});
    EXPECT_FALSE(engine.connect(vendor));
    const std::vector<LogRecord> records = log.records();
    ASSERT_GE(records.size(), 2U);
    EXPECT_EQ(records[records.size() - 2],
              (LogRecord{"PTPCommunication disconnect", "Disconnect"}));
    EXPECT_EQ(records.back(), (LogRecord{connectEvent, "Could not open session"}));
    EXPECT_EQ(pipes().written().size(), 3U);
    EXPECT_EQ(engine.connectedDeviceSerialNumber(), std::nullopt);
    EXPECT_EQ(engine.lastConnectFailure().step, ConnectFailure::Step::OpenSession);
    EXPECT_EQ(engine.lastConnectFailure().result, UsbResult::IOError);
    EXPECT_FALSE(device->isOpen);
}

TEST_F(Connection, AsksTheCameraAgentOnEveryAttempt)
{
    auto agent = std::make_shared<TalkativeAgent>();
    PTPCommunication polite(
        {.host = host, .cameraAgent = agent, .logger = &log.logger(), .agentPause = {}});
    pipes().openResult = UsbResult::ExclusiveAccess;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(polite.connect(vendor));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(agent->calls, 1);

    agent->complaint = "no such mount";
    testing::internal::CaptureStderr();
    EXPECT_FALSE(polite.connect(vendor));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR:no such mount\n");
    EXPECT_EQ(agent->calls, 2);
}

TEST_F(Connection, LeavesTheAgentAloneWhenTheConfigurationIsUnreadable)
{
    auto agent = std::make_shared<TalkativeAgent>();
    PTPCommunication polite(
        {.host = host, .cameraAgent = agent, .logger = &log.logger(), .agentPause = {}});
    device->configurationResult = UsbResult::IOError;
    EXPECT_TRUE(polite.connect(vendor));
    EXPECT_EQ(agent->calls, 0);
}

TEST_F(Connection, ClosesEverythingOnDisconnect)
{
    answerSession();
    ASSERT_TRUE(engine.connect(vendor));
    pipes().answerWrite(1, {response(0x2001)});
    engine.disconnect();
    EXPECT_FALSE(engine.connected());
    EXPECT_FALSE(engine.sessionOpen());
    EXPECT_FALSE(pipes().isOpen);
    EXPECT_FALSE(device->isOpen);
    EXPECT_EQ(engine.usbDevice(), nullptr);
    EXPECT_EQ(engine.usbInterface(), nullptr);
    EXPECT_EQ(engine.connectedDeviceProductId(), 0);
    EXPECT_EQ(engine.connectedDeviceSerialNumber(), std::nullopt);
    EXPECT_EQ(log.last(), (LogRecord{"PTPCommunication disconnect", "Disconnect"}));
}

TEST_F(Connection, EndsCleanlyWhenTheDeviceHasLeft)
{
    answerSession();
    ASSERT_TRUE(engine.connect(vendor));
    for (unsigned i = 0; i < 4; ++i)
        pipes().answer({.bytes = {}, .result = UsbResult::NoDevice});
    std::vector<std::uint32_t> storageIDs;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(engine.getStorageIDs(&storageIDs));
    EXPECT_FALSE(engine.getStorageIDs(&storageIDs));
    engine.disconnect();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    EXPECT_EQ(engine.usbDevice(), nullptr);
    EXPECT_EQ(log.last().message, "Disconnect");
}

TEST(SharedManager, IsOneInstanceMadeOfTheGivenParts)
{
    static LogFixture log;  // the shared engine lives as long as the process
    PTPCommunication::setSharedParts(
        {.host = std::make_shared<ScriptedHost>(), .logger = &log.logger(), .agentPause = {}});
    PTPCommunication& first = PTPCommunication::sharedManager();
    EXPECT_EQ(&first, &PTPCommunication::sharedManager());
    EXPECT_EQ(first.existsDevice(anyVendorID), 0);
}

}  // namespace
