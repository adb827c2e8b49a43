#include "usb/UsbAccessAdvice.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <unistd.h>
#include <utility>

namespace nivor {

namespace fs = std::filesystem;

namespace {

/// What a directory holds; nothing when it is missing or closed to us.
std::vector<fs::path> entriesOf(const fs::path& directory)
{
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(entry->path());
    return entries;
}

std::string firstLineOf(const fs::path& file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

std::optional<long> wholeNumber(const std::string& text)
{
    long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

bool hasOpen(const fs::path& process, const fs::path& node)
{
    return std::ranges::any_of(entriesOf(process / "fd"), [&node](const fs::path& descriptor) {
        std::error_code error;
        return fs::read_symlink(descriptor, error) == node && !error;
    });
}

std::string nameOf(const fs::path& process)
{
    const std::string name = firstLineOf(process / "comm");
    // The kernel cuts the name after 15 bytes; the command line has all of it.
    std::string command = firstLineOf(process / "cmdline");
    command.resize(std::min(command.find('\0'), command.size()));
    std::string longName = fs::path(command).filename().string();
    return name.size() == 15 && longName.starts_with(name) ? longName : name;
}

std::string placeOf(const UsbLocation& location)
{
    return fmt::format("bus {}, address {}", location.bus, location.address);
}

std::string joined(const std::vector<std::string>& parts)
{
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            text += i + 1 < parts.size() ? ", " : " and ";
        text += parts[i];
    }
    return text;
}

}  // namespace

UsbAccessAdvice::UsbAccessAdvice()
    : UsbAccessAdvice(Roots())
{
}

UsbAccessAdvice::UsbAccessAdvice(Roots roots)
    : roots_(std::move(roots))
{
}

const char* UsbAccessAdvice::udevRuleName()
{
    return "70-nivor-camera.rules";
}

std::vector<UsbDeviceHolder> UsbAccessAdvice::holders(const UsbLocation& location) const
{
    std::vector<UsbDeviceHolder> holders;
    if (location.deviceNode.empty())
        return holders;
    for (const fs::path& process : entriesOf(roots_.proc)) {
        const auto pid = wholeNumber(process.filename().string());
        if (pid && *pid != getpid() && hasOpen(process, location.deviceNode))
            holders.push_back({*pid, nameOf(process)});
    }
    std::ranges::sort(holders, {}, &UsbDeviceHolder::pid);
    return holders;
}

std::vector<std::string> UsbAccessAdvice::kernelDrivers(const UsbLocation& location) const
{
    std::vector<std::string> drivers;
    const std::string bus = std::to_string(location.bus);
    const std::string address = std::to_string(location.address);
    for (const fs::path& device : entriesOf(roots_.sys / "bus/usb/devices")) {
        if (firstLineOf(device / "busnum") != bus || firstLineOf(device / "devnum") != address)
            continue;
        for (const fs::path& interface : entriesOf(device)) {
            if (firstLineOf(interface / "bInterfaceClass") != "06")
                continue;
            std::error_code error;
            const std::string driver =
                fs::read_symlink(interface / "driver", error).filename().string();
            // "usbfs" stands for a program, which is found among the processes.
            if (!driver.empty() && driver != "usbfs")
                drivers.push_back(driver);
        }
    }
    std::ranges::sort(drivers);
    drivers.erase(std::unique(drivers.begin(), drivers.end()), drivers.end());
    return drivers;
}

std::string UsbAccessAdvice::inUseMessage(const UsbLocation& location) const
{
    std::vector<std::string> users;
    for (const UsbDeviceHolder& holder : holders(location))
        users.push_back(fmt::format("{} (process {})",
                                    holder.name.empty() ? "a program" : holder.name, holder.pid));
    for (const std::string& driver : kernelDrivers(location))
        users.push_back(fmt::format("the kernel driver {}", driver));
    if (users.empty())
        return fmt::format("Another program uses the camera ({}). Close every program that shows "
                           "the camera or its pictures, or unplug the camera and plug it in "
                           "again, then try once more.",
                           placeOf(location));
    return fmt::format("The camera ({}) is in use by {}. Close what uses it, or eject the camera "
                       "in the file manager, then try once more.",
                       placeOf(location), joined(users));
}

std::string UsbAccessAdvice::message(const UsbLocation& location, UsbResult result) const
{
    switch (result) {
    case UsbResult::Success:
        return {};
    case UsbResult::ExclusiveAccess:
        return inUseMessage(location);
    case UsbResult::NotPrivileged:
        return fmt::format(
            "You have no permission to use the camera ({}). Copy the file {} to "
            "/etc/udev/rules.d as the superuser, run \"sudo udevadm control --reload\", then "
            "unplug the camera and plug it in again.",
            location.deviceNode.empty() ? placeOf(location) : location.deviceNode, udevRuleName());
    case UsbResult::NoDevice:
        return "The camera is gone. Check the cable, switch the camera on and plug it in again.";
    case UsbResult::NotFound:
        return fmt::format("The device ({}) has no still-image interface that can be used. Set the "
                           "camera's USB mode to PTP or picture transfer.",
                           placeOf(location));
    case UsbResult::NoMemory:
        return "The system has no memory left for USB transfers. Close other programs that use "
               "USB devices, or raise the limit in "
               "/sys/module/usbcore/parameters/usbfs_memory_mb.";
    case UsbResult::TransactionTimeout:
        return fmt::format("The camera ({}) does not answer. Switch it off and on again.",
                           placeOf(location));
    case UsbResult::IOError:
    case UsbResult::Overrun:
    case UsbResult::PipeStalled:
        return fmt::format("The transfer from or to the camera ({}) failed: {}. Try another cable "
                           "or another port, without a hub.",
                           placeOf(location), toText(result));
    case UsbResult::Error:
    case UsbResult::BadArgument:
    case UsbResult::Unsupported:
    case UsbResult::NotOpen:
    case UsbResult::Aborted:
        break;
    }
    return fmt::format("The camera ({}) can't be used: {}. Unplug it and plug it in again.",
                       placeOf(location), toText(result));
}

}  // namespace nivor
