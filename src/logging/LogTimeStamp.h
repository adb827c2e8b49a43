/// The time stamp of a log record, "2024-05-01T09:30:00Z".
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace nivor {

/// Characters in a time stamp.
inline constexpr std::size_t logTimeStampLength = 20;

/// `time` in UTC.
std::string formatLogTimeStamp(std::chrono::sys_seconds time);

/// The time whose digits `text` shows, taken as local time, although they are written in UTC.
/// Nothing when `text` as a whole is not a time stamp, names a day or time that doesn't exist, or
/// falls into the gap where local clocks are put forward.
std::optional<std::chrono::sys_seconds> parseLogTimeStamp(std::u16string_view text);

}  // namespace nivor
