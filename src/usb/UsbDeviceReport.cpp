#include "usb/UsbDeviceReport.h"

#include <fmt/format.h>

namespace nivor {

std::string usbClassName(std::uint8_t interfaceClass)
{
    switch (interfaceClass) {
    case 0x01:
        return "audio";
    case 0x02:
        return "communications";
    case 0x03:
        return "human interface";
    case 0x05:
        return "physical";
    case 0x06:
        return "still image";
    case 0x07:
        return "printer";
    case 0x08:
        return "mass storage";
    case 0x09:
        return "hub";
    case 0x0A:
        return "communications data";
    case 0x0B:
        return "smart card";
    case 0x0D:
        return "content security";
    case 0x0E:
        return "video";
    case 0x0F:
        return "personal healthcare";
    case 0x10:
        return "audio and video";
    case 0xDC:
        return "diagnostic";
    case 0xE0:
        return "wireless controller";
    case 0xEF:
        return "miscellaneous";
    case 0xFE:
        return "application specific";
    case 0xFF:
        return "vendor specific";
    default:
        return fmt::format("class 0x{:02x}", interfaceClass);
    }
}

}  // namespace nivor
