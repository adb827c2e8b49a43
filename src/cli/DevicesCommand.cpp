#include "cli/DevicesCommand.h"

#include "cli/Output.h"
#include "content/VisibleName.h"
#include "usb/UsbHost.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <exception>
#include <ostream>

namespace nivor {
namespace {

/// A serial number comes from the device and may hold anything.
std::string shownSerialNumber(const StillImageInterface& camera)
{
    const std::string serialNumber = camera.device->serialNumber().value_or("");
    return visibleName(QString::fromStdString(serialNumber)).toStdString();
}

}  // namespace

nlohmann::json cameraJson(const StillImageInterface& camera)
{
    const std::optional<std::string> serialNumber = camera.device->serialNumber();
    return {{"vendorID", fmt::format("0x{:04x}", camera.vendorID)},
            {"productID", fmt::format("0x{:04x}", camera.productID)},
            {"serialNumber", serialNumber ? nlohmann::json(*serialNumber) : nlohmann::json()},
            {"bus", camera.location.bus},
            {"address", camera.location.address},
            {"speed", camera.location.speed},
            {"deviceNode", camera.location.deviceNode}};
}

std::string cameraText(const StillImageInterface& camera)
{
    std::string text = fmt::format("bus {:03} device {:03}  {:04x}:{:04x}", camera.location.bus,
                                   camera.location.address, camera.vendorID, camera.productID);
    const std::string serialNumber = shownSerialNumber(camera);
    text += serialNumber.empty() ? "  no serial number" : "  serial number " + serialNumber;
    if (!camera.location.speed.empty())
        text += "  " + camera.location.speed;
    return text;
}

ExitCode runDevicesCommand(CliEnvironment& environment, const CliOptions& options)
{
    std::vector<StillImageInterface> cameras;
    try {
        cameras = environment.makeHost(options.simulation)->stillImageInterfaces();
    } catch (const std::exception& error) {
        complain(environment, error.what());
        return ExitCode::Usage;
    }
    std::erase_if(cameras, [&options](const StillImageInterface& camera) {
        return options.vendorID != anyVendorID && camera.vendorID != options.vendorID;
    });

    nlohmann::json array = nlohmann::json::array();
    for (const StillImageInterface& camera : cameras) {
        if (options.isJson)
            array.push_back(cameraJson(camera));
        else
            environment.out << cameraText(camera) << '\n';
    }
    if (options.isJson)
        printJson(environment, array);
    if (!cameras.empty())
        return ExitCode::Done;
    complain(environment,
             options.vendorID == anyVendorID
                 ? std::string("no camera was found. \"nivor doctor\" shows what is on the USB.")
                 : fmt::format("no camera of vendor 0x{:04x} was found.", options.vendorID));
    return ExitCode::NoCamera;
}

}  // namespace nivor
