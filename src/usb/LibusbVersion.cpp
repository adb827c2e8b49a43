#include "LibusbVersion.h"

#include <fmt/format.h>

#include <libusb.h>

namespace nivor {

std::string libusbVersion()
{
    const libusb_version& version = *libusb_get_version();
    return fmt::format("{}.{}.{}", version.major, version.minor, version.micro);
}

}  // namespace nivor
