/// The moments that many local dates stand for.
#pragma once

#include <QDateTime>
#include <QHash>

#include <optional>

namespace nivor {

/// Remembers what the clocks' distance from UTC is on each day. To ask the system for it takes far
/// longer than anything else that a sort does with a date, and a card holds few days.
class LocalMoments {
public:
    /// Since the epoch, in UTC; smaller than any other number for a date that is invalid.
    qint64 millisecondsOf(const QDateTime& date);

private:
    /// Nothing when the clocks are changed on that day.
    std::optional<qint64> offsetOf(const QDate& day);

    QHash<qint64, std::optional<qint64>> offsets_;  ///< by the day's number
};

}  // namespace nivor
