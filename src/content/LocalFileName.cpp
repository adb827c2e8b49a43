#include "content/LocalFileName.h"

#include "content/CopyFileName.h"
#include "content/TextControls.h"

#include <QStringView>

#include <algorithm>

namespace nivor {
namespace {

// A longer ending behind a dot is part of a name rather than the mark of a file type.
constexpr qsizetype longestExtension = 127;

qsizetype utf8Size(QStringView text)
{
    return text.toUtf8().size();
}

/// The longest beginning of `text` of at most `limit` bytes of UTF-8, in whole characters.
/// `text` holds no halves of surrogate pairs.
QString cutToUtf8Size(const QString& text, qsizetype limit)
{
    qsizetype size = 0;
    qsizetype end = 0;
    while (end < text.size()) {
        const qsizetype units = text.at(end).isHighSurrogate() ? 2 : 1;
        size += utf8Size(QStringView(text).mid(end, units));
        if (size > limit)
            break;
        end += units;
    }
    return text.left(end);
}

bool isHalfOfPair(const QString& text, qsizetype at)
{
    const QChar unit = text.at(at);
    if (unit.isHighSurrogate())
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    return unit.isLowSurrogate() && (at == 0 || !text.at(at - 1).isHighSurrogate());
}

bool isForbidden(const QString& text, qsizetype at)
{
    const char16_t unit = text.at(at).unicode();
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
    return unit == u'/' || isControl || changesDirection(unit) || separatesLines(unit)
        || isHalfOfPair(text, at);
}

/// `stem` + `middle` + `extension`, with the stem cut so that the whole fits, or the extension
/// where that is the longer part.
QString fitted(const QString& stem, const QString& middle, const QString& extension)
{
    const qsizetype room = longestLocalFileName - utf8Size(middle);
    if (utf8Size(extension) <= longestExtension)
        return cutToUtf8Size(stem, room - utf8Size(extension)) + middle + extension;
    return stem + middle + cutToUtf8Size(extension, std::max<qsizetype>(room - utf8Size(stem), 0));
}

}  // namespace

QString localFileName(const QString& cameraName)
{
    QString name = cameraName;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (isForbidden(cameraName, i))
            name[i] = u'_';
    }
    if (name.isEmpty() || name == QStringLiteral(".") || name == QStringLiteral(".."))
        return QStringLiteral("_");
    if (utf8Size(name) <= longestLocalFileName)
        return name;

    const QString extension = pathExtension(name);
    if (extension.isEmpty() || utf8Size(extension) > longestExtension)
        return cutToUtf8Size(name, longestLocalFileName);
    return fitted(deletingPathExtension(name), QStringLiteral("."), extension);
}

QString numberedLocalFileName(const QString& localName, qsizetype number)
{
    QString numbered = numberedFileName(localName, number);
    if (utf8Size(numbered) <= longestLocalFileName)
        return numbered;
    return fitted(deletingPathExtension(localName), u'_' + QString::number(number) + u'.',
                  pathExtension(localName));
}

}  // namespace nivor
