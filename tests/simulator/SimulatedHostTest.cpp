#include "simulator/MemoryCard.h"
#include "simulator/SimulationOptions.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

#include <future>
#include <thread>

namespace nivor::test {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

std::shared_ptr<SimulatedCamera> cameraOf(std::uint16_t product)
{
    CameraSettings settings;
    settings.identity.productID = product;
    return std::make_shared<SimulatedCamera>(std::make_shared<MemoryCard>(), settings);
}

}  // namespace

TEST(SimulatedHostTest, ShowsCamerasInTheOrderOfAttachment)
{
    SimulatedHost host;
    const auto first = cameraOf(1);
    const auto second = cameraOf(2);
    host.attach(first);
    host.attach(second);
    ASSERT_EQ(host.stillImageInterfaces().size(), 2U);
    EXPECT_EQ(host.stillImageInterfaces().at(0).productID, 1);
    EXPECT_EQ(host.stillImageInterfaces().at(1).productID, 2);
    host.detach(first);
    host.attach(first);
    EXPECT_EQ(host.stillImageInterfaces().at(0).productID, 2);
    EXPECT_EQ(host.stillImageInterfaces().at(1).productID, 1);
    EXPECT_EQ(host.listings(), 5U);
}

TEST(SimulatedHostTest, KeepsADeviceWhileItIsAttachedAndMakesANewOneAfterwards)
{
    SimulatedHost host;
    const auto camera = cameraOf(1);
    host.attach(camera);
    const auto device = host.stillImageInterfaces().at(0).device;
    EXPECT_EQ(host.stillImageInterfaces().at(0).device, device);
    host.detach(camera);
    EXPECT_TRUE(host.stillImageInterfaces().empty());
    host.attach(camera);
    EXPECT_NE(host.stillImageInterfaces().at(0).device, device);
    EXPECT_EQ(device->open(), UsbResult::NoDevice);
}

TEST(SimulatedHostTest, EndsAWaitingReadAtOnceWhenTheCameraIsDetached)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    auto reading = std::async(std::launch::async, [&] { return host.read(); });
    std::this_thread::sleep_for(30ms);
    const auto start = Clock::now();
    host.usb.detach(host.camera);
    EXPECT_EQ(reading.get().result, UsbResult::NoDevice);
    EXPECT_LT(Clock::now() - start, 4s);
}

TEST(SimulatedHostTest, EndsAReadAmidDataWhenTheCameraIsDetached)
{
    auto card = std::make_shared<MemoryCard>();
    const std::uint32_t film = card->addFile(u"A.MOV", std::uint64_t{1} << 40);
    SimulatorHost host(card);
    host.openSession();
    host.send(OperationCode::GetObject, {film});
    auto reading = std::async(std::launch::async, [&] {
        ByteBuffer buffer(std::size_t{16} << 20);
        std::size_t received = 0;
        UsbResult result = UsbResult::Success;
        while (succeeded(result))
            result = host.interface->readPipe(buffer, received, patient);
        return std::pair(result, received);
    });
    std::this_thread::sleep_for(30ms);
    host.usb.detach(host.camera);
    EXPECT_EQ(reading.get(), std::pair(UsbResult::NoDevice, std::size_t{0}));
}

TEST(SimulatedHostTest, AnswersNoDeviceToEveryCallAfterwards)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    host.usb.detach(host.camera);
    std::uint8_t value = 0;
    std::shared_ptr<UsbInterface> found;
    ControlRequest request{};
    EXPECT_EQ(host.device->serialNumber(), std::nullopt);
    EXPECT_EQ(host.device->open(), UsbResult::NoDevice);
    EXPECT_EQ(host.device->configurationValue(0, value), UsbResult::NoDevice);
    EXPECT_EQ(host.device->setConfiguration(1), UsbResult::NoDevice);
    EXPECT_EQ(host.device->findInterface(stillImageTriple, found), UsbResult::NoDevice);
    EXPECT_EQ(host.device->controlRequest(request), UsbResult::NoDevice);
    EXPECT_EQ(host.interface->open(), UsbResult::NoDevice);
    EXPECT_EQ(host.send(OperationCode::OpenSession, {1}), UsbResult::NoDevice);
    EXPECT_EQ(host.read().result, UsbResult::NoDevice);
    EXPECT_EQ(host.interface->close(), UsbResult::NoDevice);
    EXPECT_EQ(host.device->close(), UsbResult::NoDevice);
}

TEST(SimulatedHostTest, ForgetsTheSessionWhenTheCameraIsAttachedAnew)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    host.openSession();
    host.usb.detach(host.camera);
    host.attach();
    EXPECT_FALSE(host.camera->hasOpenSession());
    host.openSession();
    EXPECT_EQ(host.camera->record().sessionsOpened, 2U);
}

TEST(SimulatedHostTest, SurvivesAttachingAndDetachingUnderTraffic)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    const auto device = host.device;
    const auto interface = host.interface;
    std::thread traffic([&] {
        ByteBuffer buffer(5120);
        std::size_t received = 0;
        while (interface->writePipe(container(12, 1, 0x1001, 1)) != UsbResult::NoDevice)
            static_cast<void>(interface->readPipe(buffer, received, brief));
    });
    for (int i = 0; i < 50; ++i) {
        static_cast<void>(host.usb.stillImageInterfaces());
        static_cast<void>(host.camera->record());
    }
    host.usb.detach(host.camera);
    host.attach();
    traffic.join();
    EXPECT_EQ(device->open(), UsbResult::NoDevice);
}

TEST(SimulatedDeviceTest, TellsWhoItIs)
{
    const auto host = makeSimulatedHost({});
    const StillImageInterface found = host->stillImageInterfaces().at(0);
    EXPECT_EQ(found.vendorID, 0xFFFE);
    EXPECT_EQ(found.productID, 0x0001);
    EXPECT_EQ(found.location.bus, 1U);
    EXPECT_EQ(found.device->serialNumber(), "SIMULATED-0001");
}

TEST(SimulatedDeviceTest, MayHaveNoSerialNumber)
{
    CameraSettings settings;
    settings.identity.serialNumber.reset();
    SimulatorHost host(std::make_shared<MemoryCard>(), settings);
    EXPECT_EQ(host.device->serialNumber(), std::nullopt);
}

TEST(SimulatedDeviceTest, HasOneConfigurationAndOneInterface)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    std::uint8_t value = 0;
    EXPECT_EQ(host.device->configurationValue(0, value), UsbResult::Success);
    EXPECT_EQ(host.device->setConfiguration(value), UsbResult::Success);
    EXPECT_EQ(host.device->configurationValue(1, value), UsbResult::NotFound);
    EXPECT_EQ(host.device->setConfiguration(9), UsbResult::PipeStalled);
    std::shared_ptr<UsbInterface> found;
    EXPECT_EQ(host.device->findInterface({8, 6, 0x50}, found), UsbResult::NotFound);
    EXPECT_EQ(found, nullptr);
}

TEST(SimulatedDeviceTest, ServesNobodyWhoHasNotOpenedIt)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    ControlRequest request{.bmRequestType = 0xA1, .bRequest = 0x67, .data = {}};
    EXPECT_EQ(host.interface->close(), UsbResult::Success);
    EXPECT_EQ(host.interface->close(), UsbResult::NotOpen);
    EXPECT_EQ(host.send(OperationCode::OpenSession, {1}), UsbResult::NotOpen);
    EXPECT_EQ(host.read().result, UsbResult::NotOpen);
    EXPECT_EQ(host.device->close(), UsbResult::Success);
    EXPECT_EQ(host.device->close(), UsbResult::NotOpen);
    EXPECT_EQ(host.interface->open(), UsbResult::NotOpen);
    EXPECT_EQ(host.device->setConfiguration(1), UsbResult::NotOpen);
    EXPECT_EQ(host.device->controlRequest(request), UsbResult::NotOpen);
}

TEST(SimulatedDeviceTest, OpensOnlyOnce)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    EXPECT_EQ(host.device->open(), UsbResult::ExclusiveAccess);
    EXPECT_EQ(host.interface->open(), UsbResult::ExclusiveAccess);
}

TEST(SimulatedDeviceTest, FailsEachStepAsPlanned)
{
    SimulatorHost host(std::make_shared<MemoryCard>());
    host.camera->setFaults(FaultPlan()
                               .usb(UsbStep::SerialNumber, UsbResult::Error)
                               .usb(UsbStep::DeviceOpen, UsbResult::NotPrivileged)
                               .usb(UsbStep::ConfigurationDescriptor, UsbResult::IOError)
                               .usb(UsbStep::SetConfiguration, UsbResult::Error)
                               .usb(UsbStep::FindInterface, UsbResult::NotFound)
                               .usb(UsbStep::InterfaceOpen, UsbResult::ExclusiveAccess)
                               .usb(UsbStep::WritePipe, UsbResult::PipeStalled)
                               .usb(UsbStep::ReadPipe, UsbResult::Overrun));
    std::uint8_t value = 0;
    std::shared_ptr<UsbInterface> found;
    EXPECT_EQ(host.device->serialNumber(), std::nullopt);
    EXPECT_EQ(host.device->open(), UsbResult::NotPrivileged);
    EXPECT_EQ(host.device->configurationValue(0, value), UsbResult::IOError);
    EXPECT_EQ(host.device->setConfiguration(1), UsbResult::Error);
    EXPECT_EQ(host.device->findInterface(stillImageTriple, found), UsbResult::NotFound);
    EXPECT_EQ(host.interface->open(), UsbResult::ExclusiveAccess);
    EXPECT_EQ(host.send(OperationCode::OpenSession, {1}), UsbResult::PipeStalled);
    EXPECT_EQ(host.read().result, UsbResult::Overrun);
    EXPECT_TRUE(host.camera->record().commands.empty());
}

}  // namespace nivor::test
