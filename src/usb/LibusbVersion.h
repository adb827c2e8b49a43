/// The version of the libusb that the program runs with.
#pragma once

#include <string>

namespace nivor {

/// Of the library loaded now, such as "1.0.26", which may be newer than the one built against.
std::string libusbVersion();

}  // namespace nivor
