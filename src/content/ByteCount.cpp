#include "content/ByteCount.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>

namespace nivor {
namespace {

struct Unit {
    double size;
    const char* name;
};

constexpr double unitStep = 1000;
constexpr std::array<Unit, 4> units{{{1, "B"}, {1e3, "kB"}, {1e6, "MB"}, {1e9, "GB"}}};

/// The unit in which `bytes` has at most three digits before the point, once rounded to one
/// behind it.
const Unit& unitFor(std::uint64_t bytes)
{
    constexpr double roundsUp = 0.05;
    std::size_t i = 0;
    while (i + 1 < units.size()
           && static_cast<double>(bytes) / units[i].size >= unitStep - (i == 0 ? 0 : roundsUp))
        ++i;
    return units[i];
}

std::string numberIn(const Unit& unit, std::uint64_t bytes)
{
    return unit.size > 1 ? fmt::format("{:.1f}", static_cast<double>(bytes) / unit.size)
                         : fmt::format("{}", bytes);
}

}  // namespace

std::string byteCountText(std::uint64_t bytes)
{
    const Unit& unit = unitFor(bytes);
    return numberIn(unit, bytes) + ' ' + unit.name;
}

std::string amountText(std::uint64_t bytes, std::uint64_t total)
{
    const Unit& unit = unitFor(total);
    return numberIn(unit, bytes) + " of " + numberIn(unit, total) + ' ' + unit.name;
}

std::string rateText(double bytesPerSecond)
{
    return fmt::format("{:.1f} MB/s", bytesPerSecond / 1e6);
}

std::string durationText(std::chrono::seconds duration)
{
    constexpr std::int64_t perMinute = 60;
    const std::int64_t seconds = duration.count() % perMinute;
    const std::int64_t minutes = duration.count() / perMinute;
    const std::int64_t hours = minutes / perMinute;
    if (hours > 0)
        return fmt::format("{}:{:02}:{:02}", hours, minutes % perMinute, seconds);
    return fmt::format("{}:{:02}", minutes, seconds);
}

std::string countText(std::uint64_t count, const std::string& singular)
{
    return fmt::format("{} {}{}", count, singular, count == 1 ? "" : "s");
}

}  // namespace nivor
