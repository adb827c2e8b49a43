#include "datasets/TrimmingNullCharacters.h"

namespace nivor {

QString NVX_stringByTrimmingNullCharacters(const QString& text)
{
    const qsizetype firstNull = text.indexOf(QChar(u'\0'));
    return firstNull > 0 ? text.first(firstNull) : text;
}

}  // namespace nivor
