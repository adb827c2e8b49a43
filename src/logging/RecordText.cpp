#include "logging/RecordText.h"

#include "logging/RecordTime.h"

namespace nivor {

bool hasRecordMarks(std::string_view text)
{
    return text.find('\n') != std::string_view::npos
        || text.find(recordMarker) != std::string_view::npos;
}

std::string withoutRecordMarks(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\n')
            result += "\u240A";
        else if (text.substr(at).starts_with(recordMarker))
            result += "\u2039";
        else
            result += text[at];
    }
    return result;
}

}  // namespace nivor
