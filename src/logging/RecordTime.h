/// When the records of a log file were written.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace nivor {

/// What the line begins with that opens a record; the time stamp follows.
inline constexpr std::string_view recordMarker = "<log time=\"";

/// A time as a log file tells it: the epoch where it holds no record, nothing where the stamp
/// can't be read. The digits, although written in UTC, are taken as local time.
using RecordTime = std::optional<std::chrono::sys_seconds>;

/// The time of the last record in the text of a log file. A text that is not UTF-8 holds none.
RecordTime lastRecordTime(std::string_view contents);

}  // namespace nivor
