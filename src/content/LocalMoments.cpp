#include "content/LocalMoments.h"

#include <limits>

namespace nivor {
namespace {

constexpr qint64 millisecondsPerDay = 86'400'000;

/// From the epoch of the clocks on the wall.
qint64 localMilliseconds(const QDate& day, const QTime& time)
{
    static const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    return (day.toJulianDay() - epoch) * millisecondsPerDay + time.msecsSinceStartOfDay();
}

}  // namespace

qint64 LocalMoments::millisecondsOf(const QDateTime& date)
{
    if (!date.isValid())
        return std::numeric_limits<qint64>::min();
    if (date.timeSpec() != Qt::LocalTime)
        return date.toMSecsSinceEpoch();
    const std::optional<qint64> offset = offsetOf(date.date());
    return offset ? localMilliseconds(date.date(), date.time()) - *offset
                  : date.toMSecsSinceEpoch();
}

std::optional<qint64> LocalMoments::offsetOf(const QDate& day)
{
    const auto known = offsets_.constFind(day.toJulianDay());
    if (known != offsets_.cend())
        return known.value();
    const auto offsetAt = [](const QDate& date, const QTime& time) {
        return localMilliseconds(date, time) - QDateTime(date, time).toMSecsSinceEpoch();
    };
    // A change at midnight belongs to both days.
    const qint64 before = offsetAt(day.addDays(-1), QTime(23, 59, 59));
    const qint64 after = offsetAt(day.addDays(1), QTime(0, 0));
    std::optional<qint64> offset;
    if (before == after)
        offset = before;
    offsets_.insert(day.toJulianDay(), offset);
    return offset;
}

}  // namespace nivor
