/// Numbers of bytes in megabytes or gigabytes, as file managers show them.
#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

namespace nivor {

/// Decimal units, never less than MB, with at most one digit behind the point for MB and two for
/// GB; less than a tenth of a megabyte has three. The locale says how numbers are written.
class ByteCountFormatter {
public:
    explicit ByteCountFormatter(const QLocale& locale = QLocale());

    /// Such as "0.006 MB", "18.4 MB" or "5.37 GB". Anything above 0 shows as more than 0.
    [[nodiscard]] QString stringFromByteCount(std::uint64_t bytes) const;

private:
    [[nodiscard]] QString text(double number, int digits, const QString& unit) const;

    QLocale locale_;
};

}  // namespace nivor
