#include "cli/DoctorCommand.h"

#include "cli/DevicesCommand.h"
#include "cli/Output.h"
#include "logging/RollingLogger.h"
#include "usb/UsbAccessAdvice.h"
#include "usb/UsbHost.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cerrno>
#include <exception>
#include <ostream>
#include <system_error>

namespace nivor {
namespace {

/// What was found out.
struct Findings {
    std::vector<StillImageInterface> cameras;
    std::vector<UsbDeviceReport> devices;
};

bool isAccepted(const StillImageInterface& camera, const CliOptions& options)
{
    return options.vendorID == anyVendorID || camera.vendorID == options.vendorID;
}

std::string vendorText(std::int32_t vendorID)
{
    return vendorID == anyVendorID ? std::string("any") : fmt::format("0x{:04x}", vendorID);
}

std::string accessText(const UsbDeviceReport& device)
{
    if (device.writable)
        return "may be opened";
    return device.readable ? "may only be read, so it can't be opened" : "may not be opened";
}

std::string interfacesText(const UsbDeviceReport& device)
{
    std::string text;
    for (const InterfaceTriple& triple : device.interfaces) {
        text += text.empty() ? "" : ", ";
        text += usbClassName(triple.interfaceClass);
    }
    return text.empty() ? "no interface known" : text;
}

void printDevice(std::ostream& out, const UsbDeviceReport& device)
{
    out << fmt::format("  bus {:03} device {:03}  {:04x}:{:04x}  {}  {}\n", device.location.bus,
                       device.location.address, device.vendorID, device.productID,
                       interfacesText(device), device.location.speed);
    if (!device.isStillImage)
        return;
    out << "    camera: " << accessText(device);
    if (!device.location.deviceNode.empty())
        out << " (" << device.location.deviceNode << ')';
    out << '\n';
    for (const UsbDeviceHolder& holder : device.holders) {
        out << fmt::format("    in use by process {} ({})\n", holder.pid,
                           holder.name.empty() ? "unknown" : holder.name);
    }
    if (!device.writable) {
        const std::string advice =
            UsbAccessAdvice().message(device.location, UsbResult::NotPrivileged);
        out << "    " << advice << '\n';
    }
}

/// Why no log can be kept, in words; empty when it can. The run's first record has been tried by
/// now, so the folder and the file are there if they can be made at all.
std::string logProblem(const RollingLogger& logger)
{
    if (logger.saveDirectory().empty())
        return "there is no folder for it";
    for (const std::filesystem::path& path : {logger.saveDirectory(), logger.targetLogName()}) {
        if (!path.empty() && ::access(path.c_str(), W_OK) != 0)
            return "can't be written: " + std::generic_category().message(errno);
    }
    return {};
}

void printText(CliEnvironment& environment, const CliOptions& options, const Findings& findings)
{
    std::ostream& out = environment.out;
    out << "Cameras\n";
    for (const StillImageInterface& camera : findings.cameras) {
        out << "  " << cameraText(camera)
            << (isAccepted(camera, options) ? "" : "  (another vendor than the one asked for)")
            << '\n';
    }
    if (findings.cameras.empty()) {
        out << "  none. Is it connected by a cable that carries data, switched on, and set to PTP\n"
               "  or picture transfer? A phone must be unlocked.\n";
    }
    out << "  vendor asked for: " << vendorText(options.vendorID) << '\n';
    if (!options.simulation.isWanted) {
        out << "USB\n";
        for (const UsbDeviceReport& device : findings.devices)
            printDevice(out, device);
        if (findings.devices.empty())
            out << "  no device at all, or the USB can't be looked at\n";
    }
    out << "Log\n  " << environment.logger.saveDirectory().string() << '\n';
    const std::string problem = logProblem(environment.logger);
    if (!problem.empty())
        out << "  " << problem << '\n';
    out << "Versions\n  NIVOR File Transfer " << environment.version << '\n';
    for (const auto& [name, version] : environment.libraryVersions)
        out << "  " << name << ' ' << version << '\n';
}

nlohmann::json deviceJson(const UsbDeviceReport& device)
{
    nlohmann::json holders = nlohmann::json::array();
    for (const UsbDeviceHolder& holder : device.holders)
        holders.push_back({{"pid", holder.pid}, {"name", holder.name}});
    nlohmann::json interfaces = nlohmann::json::array();
    for (const InterfaceTriple& triple : device.interfaces)
        interfaces.push_back(usbClassName(triple.interfaceClass));
    return {{"vendorID", fmt::format("0x{:04x}", device.vendorID)},
            {"productID", fmt::format("0x{:04x}", device.productID)},
            {"bus", device.location.bus},
            {"address", device.location.address},
            {"speed", device.location.speed},
            {"deviceNode", device.location.deviceNode},
            {"interfaces", interfaces},
            {"stillImage", device.isStillImage},
            {"readable", device.readable},
            {"writable", device.writable},
            {"holders", holders}};
}

nlohmann::json findingsJson(const CliEnvironment& environment, const CliOptions& options,
                            const Findings& findings)
{
    nlohmann::json cameras = nlohmann::json::array();
    for (const StillImageInterface& camera : findings.cameras) {
        nlohmann::json json = cameraJson(camera);
        json["accepted"] = isAccepted(camera, options);
        cameras.push_back(std::move(json));
    }
    nlohmann::json devices = nlohmann::json::array();
    for (const UsbDeviceReport& device : findings.devices)
        devices.push_back(deviceJson(device));
    nlohmann::json versions = {{"NIVOR File Transfer", environment.version}};
    for (const auto& [name, version] : environment.libraryVersions)
        versions[name] = version;
    const std::string problem = logProblem(environment.logger);
    return {{"cameras", cameras},
            {"vendorID", vendorText(options.vendorID)},
            {"usb", devices},
            {"logDirectory", environment.logger.saveDirectory().string()},
            {"logProblem", problem.empty() ? nlohmann::json() : nlohmann::json(problem)},
            {"versions", versions}};
}

}  // namespace

ExitCode runDoctorCommand(CliEnvironment& environment, const CliOptions& options)
{
    Findings findings;
    try {
        findings.cameras = environment.makeHost(options.simulation)->stillImageInterfaces();
    } catch (const std::exception& error) {
        complain(environment, error.what());
        return ExitCode::Usage;
    }
    if (!options.simulation.isWanted)
        findings.devices = environment.devicesOnBus();
    if (options.isJson)
        printJson(environment, findingsJson(environment, options, findings));
    else
        printText(environment, options, findings);
    return ExitCode::Done;
}

}  // namespace nivor
