// Finding, opening and closing the camera.

#include "ptp/PTPCommunication.h"

#include "codes/StillImageClass.h"
#include "foundation/SystemConsole.h"
#include "usb/CameraAgent.h"

#include <fmt/format.h>

#include <array>
#include <thread>
#include <utility>

namespace nivor {
namespace {

constexpr std::uint32_t firstTransactionID = 1;
constexpr std::array<std::uint32_t, 3> openSessionTimeouts{1000, 1000, 3000};
constexpr std::size_t longestSerialNumber = 511;

enum DevicePresence : std::int64_t { Absent = 0, Known = 1, Different = 2 };

bool matchesVendor(const StillImageInterface& interface, std::int32_t vendorID)
{
    return vendorID == anyVendorID || vendorID == std::int32_t{interface.vendorID};
}

}  // namespace

std::int64_t PTPCommunication::existsDevice(std::int32_t vendorID)
{
    const std::unique_lock guard(lock_, std::try_to_lock);
    // A running operation is proof enough of a camera, and must not be waited for.
    return guard.owns_lock() ? searchDevice(vendorID) : Known;
}

std::int64_t PTPCommunication::searchDevice(std::int32_t vendorID)
{
    const std::optional<StillImageInterface> camera = findCamera(vendorID);
    if (!camera)
        return Absent;
    const std::string serialNumber = getSerialNumber(*camera->device);
    if (camera->productID == connectedDeviceProductId()
        && connectedDeviceSerialNumber() == serialNumber)
        return Known;
    setConnectedDeviceProductId(camera->productID);
    setConnectedDeviceSerialNumber(serialNumber);
    return Different;
}

bool PTPCommunication::getDeviceInterface(std::int32_t vendorID)
{
    const std::optional<StillImageInterface> camera = findCamera(vendorID);
    if (!camera)
        return false;
    setUsbDevice(camera->device);
    location_ = camera->location;
    setConnectedDeviceProductId(camera->productID);
    setConnectedDeviceSerialNumber(getSerialNumber(*camera->device));
    return true;
}

std::string PTPCommunication::getSerialNumber(UsbDevice& device)
{
    const std::string serialNumber = device.serialNumber().value_or("");
    return serialNumber.size() <= longestSerialNumber ? serialNumber : std::string();
}

std::optional<StillImageInterface> PTPCommunication::findCamera(std::int32_t vendorID)
{
    for (StillImageInterface& interface : parts_.host->stillImageInterfaces()) {
        if (matchesVendor(interface, vendorID))
            return std::move(interface);
    }
    return std::nullopt;
}

bool PTPCommunication::connect(std::int32_t vendorID)
{
    constexpr Selector selector{"connect:"};
    const std::lock_guard guard(lock_);
    // An attempt that could not read the configuration has left its device open.
    closeHandles();
    setConnected(false);
    location_ = {};

    if (!getDeviceInterface(vendorID)) {
        writeLog(selector.text(), "Device not found");
        return connectFailed(ConnectFailure::Step::FindDevice, UsbResult::NotFound);
    }

    const std::shared_ptr<UsbDevice> device = usbDevice();
    UsbResult result = device->open();
    if (!succeeded(result)) {
        setUsbDevice(nullptr);
        writeLog(selector.text(),
                 fmt::format("Could not open device (error: {:x})", codeOf(result)));
        return connectFailed(ConnectFailure::Step::OpenDevice, result);
    }

    std::uint8_t configuration = 0;
    result = device->configurationValue(0, configuration);
    if (!succeeded(result)) {
        writeLog(selector.text(),
                 fmt::format("Could not set active configuration (error: {:x})", codeOf(result)));
        connectFailed(ConnectFailure::Step::ReadConfiguration, result);
        return true;  // deliberate: the caller looks at `connected`
    }
    static_cast<void>(device->setConfiguration(configuration));

    releaseCameraFromAgent();
    std::this_thread::sleep_for(parts_.agentPause);

    result = openInterface();
    if (!succeeded(result)) {
        closeHandles();
        writeLog(selector.text(),
                 fmt::format("Could not open interface (error: {:x})", codeOf(result)));
        return connectFailed(ConnectFailure::Step::OpenInterface, result);
    }

    setTransactionID(firstTransactionID);
    answerMatch_.restart();
    sentTransaction_ = 0;
    stoppedTransaction_ = 0;
    setConnected(openSessionPatiently());
    if (!connected()) {
        const UsbResult cause = lastTransactionFailure().usbResult;
        disconnect();
        writeLog(selector.text(), "Could not open session");
        return connectFailed(ConnectFailure::Step::OpenSession,
                             succeeded(cause) ? UsbResult::TransactionTimeout : cause);
    }
    writeLog(selector.text(), "Connect");
    connectFailure_.set({});
    return true;
}

void PTPCommunication::disconnect()
{
    constexpr Selector selector{"disconnect"};
    const std::lock_guard guard(lock_);
    closeSession();
    closeHandles();
    setConnected(false);
    setConnectedDeviceProductId(0);
    setConnectedDeviceSerialNumber(std::nullopt);
    writeLog(selector.text(), "Disconnect");
}

bool PTPCommunication::connectFailed(ConnectFailure::Step step, UsbResult result)
{
    connectFailure_.set({step, result, location_});
    return false;
}

UsbResult PTPCommunication::openInterface()
{
    std::shared_ptr<UsbInterface> interface;
    UsbResult result = usbDevice()->findInterface(stillImageTriple, interface);
    if (succeeded(result))
        result = interface->open();
    if (succeeded(result))
        setUsbInterface(std::move(interface));
    return result;
}

bool PTPCommunication::openSessionPatiently()
{
    for (const std::uint32_t timeout : openSessionTimeouts) {
        if (openSession(timeout))
            return true;
    }
    return false;
}

void PTPCommunication::releaseCameraFromAgent()
{
    if (!parts_.cameraAgent)
        return;
    const std::string complaint = parts_.cameraAgent->release();
    if (!complaint.empty())
        writeToSystemConsole("ERROR:" + complaint);
}

void PTPCommunication::closeHandles()
{
    if (const std::shared_ptr<UsbInterface> interface = usbInterface()) {
        static_cast<void>(interface->close());
        setUsbInterface(nullptr);
    }
    if (const std::shared_ptr<UsbDevice> device = usbDevice()) {
        static_cast<void>(device->close());
        setUsbDevice(nullptr);
    }
}

}  // namespace nivor
