/// Reads the date texts of PTP datasets (MTP 1.1, 3.2.5), in their plain form only.
#pragma once

#include <QDateTime>
#include <QString>
#include <QTimeZone>

namespace nivor {

/// Reads dates written "yyyyMMdd'T'HHmmss" in the time zone that was the process's when the
/// formatter was created: a camera's local time counts as the computer's. May be used from several
/// threads at a time.
class DateFormatter {
public:
    DateFormatter();

    /// The date that `text` is, or an invalid one when `text` as a whole doesn't match the pattern,
    /// names a day or time that doesn't exist, or falls into the gap where clocks are put forward.
    [[nodiscard]] QDateTime dateFromString(const QString& text) const;

private:
    QTimeZone zone_;
};

}  // namespace nivor
