/// Short names for the texts that tests write down.
#pragma once

#include <QString>

#include <string_view>

namespace nivor::test {

/// These units as they stand, nulls among them included.
inline QString text(std::u16string_view units)
{
    return QString(reinterpret_cast<const QChar*>(units.data()),
                   static_cast<qsizetype>(units.size()));
}

inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

}  // namespace nivor::test
