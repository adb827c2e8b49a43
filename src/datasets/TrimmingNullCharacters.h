/// Cuts the terminator off a text decoded from a PTP string.
#pragma once

#include <QString>

namespace nivor {

/// `text` up to its first U+0000, or the whole of it when it has none or begins with one: only a
/// null after at least one real character cuts a text.
QString NVX_stringByTrimmingNullCharacters(const QString& text);

}  // namespace nivor
