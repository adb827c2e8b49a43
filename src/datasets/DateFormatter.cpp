#include "datasets/DateFormatter.h"

#include "foundation/DigitShape.h"

#include <QStringView>

#include <cstddef>
#include <string_view>

namespace nivor {

DateFormatter::DateFormatter()
    : zone_(QTimeZone::systemTimeZone())
{
}

QDateTime DateFormatter::dateFromString(const QString& text) const
{
    // Not by the library's parser: on its way it asks what the digits mean in the local zone, which
    // is slow and may be another zone by now.
    const std::u16string_view units(QStringView(text).utf16(),
                                    static_cast<std::size_t>(text.size()));
    if (!hasShape(units, u"00000000T000000"))
        return {};

    const QDate day(numberOf(units.substr(0, 4)), numberOf(units.substr(4, 2)),
                    numberOf(units.substr(6, 2)));
    const QTime time(numberOf(units.substr(9, 2)), numberOf(units.substr(11, 2)),
                     numberOf(units.substr(13, 2)));
    if (!day.isValid() || !time.isValid())
        return {};

    // A zone that the system can't name is left to the C library, as local time.
    const QDateTime date =
        zone_.isValid() ? QDateTime(day, time, zone_) : QDateTime(day, time, Qt::LocalTime);
    // Some versions of the library move a time out of the gap rather than refuse it.
    return date.isValid() && date.time() == time ? date : QDateTime();
}

}  // namespace nivor
