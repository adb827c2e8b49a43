#include "logging/RecordTime.h"

#include "logging/LogTimeStamp.h"

#include <QStringConverter>
#include <QStringView>
#include <QUtf8StringView>

#include <algorithm>
#include <cstddef>

namespace nivor {
namespace {

/// The stamp is taken from where the writer puts it, at the start of its line, wherever in the
/// line the marker is.
RecordTime timeInLine(std::string_view lineBytes)
{
    // Positions count UTF-16 units; a byte order mark is one of them.
    QStringDecoder toUtf16(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString line =
        toUtf16(QByteArrayView(lineBytes.data(), static_cast<qsizetype>(lineBytes.size())));
    const QStringView stamp =
        QStringView(line).mid(qsizetype{recordMarker.size()}, qsizetype{logTimeStampLength});
    return parseLogTimeStamp({stamp.utf16(), static_cast<std::size_t>(stamp.size())});
}

}  // namespace

RecordTime lastRecordTime(std::string_view contents)
{
    constexpr std::chrono::sys_seconds epoch{};
    // A text is valid as a whole or not a text at all.
    if (!QUtf8StringView(contents.data(), static_cast<qsizetype>(contents.size())).isValidUtf8())
        return epoch;
    const std::size_t marker = contents.rfind(recordMarker);
    if (marker == std::string_view::npos)
        return epoch;
    const std::size_t lineFeed = contents.rfind('\n', marker);
    const std::size_t begin = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
    const std::size_t end = std::min(contents.find('\n', marker), contents.size());
    return timeInLine(contents.substr(begin, end - begin));
}

}  // namespace nivor
