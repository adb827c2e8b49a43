/// Numbers of bytes and lengths of time as people read them.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace nivor {

/// A number of bytes in decimal units, such as "812 B", "3.4 MB" or "1.2 GB".
std::string byteCountText(std::uint64_t bytes);

/// How much of how much, in the unit of the latter: "3.4 of 12.0 MB".
std::string amountText(std::uint64_t bytes, std::uint64_t total);

/// Bytes per second, in MB/s: "23.4 MB/s".
std::string rateText(double bytesPerSecond);

/// Minutes and seconds, or hours, minutes and seconds: "0:07", "1:02:03".
std::string durationText(std::chrono::seconds duration);

/// A number of things: "1 file", "2 files".
std::string countText(std::uint64_t count, const std::string& singular);

}  // namespace nivor
