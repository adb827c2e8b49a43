#include "content/ByteCountFormatter.h"

#include <algorithm>
#include <utility>

namespace nivor {
namespace {

constexpr double megabyte = 1e6;
constexpr double gigabyte = 1e9;

// From here on a number of megabytes would be rounded up to a thousand of them.
constexpr double firstGigabyte = 999.95e6;

// Below this one digit behind the point would say nothing.
constexpr double tenthOfMegabyte = 0.1e6;
constexpr double leastShown = 0.001;

}  // namespace

ByteCountFormatter::ByteCountFormatter(const QLocale& locale)
    : locale_(locale)
{
}

QString ByteCountFormatter::stringFromByteCount(std::uint64_t bytes) const
{
    const auto count = static_cast<double>(bytes);
    if (count >= firstGigabyte)
        return text(count / gigabyte, 2, QStringLiteral("GB"));
    if (bytes == 0 || count >= tenthOfMegabyte)
        return text(count / megabyte, 1, QStringLiteral("MB"));
    return text(std::max(count / megabyte, leastShown), 3, QStringLiteral("MB"));
}

QString ByteCountFormatter::text(double number, int digits, const QString& unit) const
{
    QString shown = locale_.toString(number, 'f', digits);
    const QString point = locale_.decimalPoint();
    // A zero that says nothing is left out: "2 GB" rather than "2.00 GB".
    if (shown.contains(point)) {
        while (shown.endsWith(locale_.zeroDigit()))
            shown.chop(locale_.zeroDigit().size());
        if (shown.endsWith(point))
            shown.chop(point.size());
    }
    return shown + u' ' + unit;
}

}  // namespace nivor
