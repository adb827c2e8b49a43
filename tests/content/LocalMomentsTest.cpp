#include "content/LocalMoments.h"

#include "support/TimeZone.h"

#include <gtest/gtest.h>

#include <limits>

using namespace nivor;
using nivor::test::TimeZone;

namespace {

/// Every half hour of the days from `first` on, twice, as the second answer is from memory.
void expectMomentsOfDays(const QDate& first, int days)
{
    LocalMoments moments;
    for (int i = 0; i < 2 * 48 * days; ++i) {
        const int halfHour = i % (48 * days);
        const QDateTime date(first.addDays(halfHour / 48),
                             QTime(halfHour % 48 / 2, halfHour % 2 * 30, 7, 9));
        if (date.isValid()) {
            EXPECT_EQ(moments.millisecondsOf(date), date.toMSecsSinceEpoch())
                << date.toString(Qt::ISODateWithMs).toStdString();
        }
    }
}

TEST(LocalMoments, AreThoseOfTheSystemWhereTheClocksChangeAtNight)
{
    const TimeZone zone("Europe/Berlin");
    expectMomentsOfDays(QDate(2026, 3, 27), 5);
    expectMomentsOfDays(QDate(2026, 10, 23), 5);
}

TEST(LocalMoments, AreThoseOfTheSystemWhereTheClocksChangeAtMidnight)
{
    const TimeZone zone("America/Havana");
    expectMomentsOfDays(QDate(2026, 3, 6), 5);
    expectMomentsOfDays(QDate(2026, 10, 30), 5);
}

TEST(LocalMoments, AreThoseOfTheSystemBeforeTheEpoch)
{
    const TimeZone zone("Asia/Tokyo");
    expectMomentsOfDays(QDate(1969, 12, 30), 4);
}

TEST(LocalMoments, OfDatesWithAZoneOfTheirOwnAreTheirs)
{
    const QDate day(2026, 7, 1);
    LocalMoments moments;
    for (const QDateTime& date : {QDateTime(day, QTime(1, 2), Qt::UTC),
                                  QDateTime(day, QTime(1, 2), Qt::OffsetFromUTC, 5400)})
        EXPECT_EQ(moments.millisecondsOf(date), date.toMSecsSinceEpoch());
}

TEST(LocalMoments, NoDateIsBeforeEveryMoment)
{
    EXPECT_EQ(LocalMoments().millisecondsOf({}), std::numeric_limits<qint64>::min());
}

}  // namespace
