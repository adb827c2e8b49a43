#include "logging/LogTimeStamp.h"

#include "foundation/DigitShape.h"

#include <QDateTime>
#include <QTimeZone>

#include <fmt/format.h>

namespace nivor {

std::string formatLogTimeStamp(std::chrono::sys_seconds time)
{
    const auto midnight = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss clock(time - midnight);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                       clock.hours().count(), clock.minutes().count(), clock.seconds().count());
}

std::optional<std::chrono::sys_seconds> parseLogTimeStamp(std::u16string_view text)
{
    if (!hasShape(text, u"0000-00-00T00:00:00Z"))
        return std::nullopt;

    const QDate day(numberOf(text.substr(0, 4)), numberOf(text.substr(5, 2)),
                    numberOf(text.substr(8, 2)));
    const QTime time(numberOf(text.substr(11, 2)), numberOf(text.substr(14, 2)),
                     numberOf(text.substr(17, 2)));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;

    // A zone that the system can't name is left to the C library, as local time.
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const QDateTime local =
        zone.isValid() ? QDateTime(day, time, zone) : QDateTime(day, time, Qt::LocalTime);
    // Some versions of the library move a time out of the gap rather than refuse it.
    if (!local.isValid() || local.time() != time)
        return std::nullopt;
    return std::chrono::sys_seconds(std::chrono::seconds(local.toSecsSinceEpoch()));
}

}  // namespace nivor
