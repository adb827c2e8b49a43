/// Texts of foreign origin as they may stand in a log record.
#pragma once

#include <string>
#include <string_view>

namespace nivor {

/// `text` without what readers of the log take for the beginning of a record: a line feed becomes
/// the sign for one (U+240A), and the bracket of `<log time="` a typographic one (U+2039). All
/// else stays, whatever it is: the log shows what came.
std::string withoutRecordMarks(std::string_view text);

/// Whether that would change anything.
bool hasRecordMarks(std::string_view text);

}  // namespace nivor
