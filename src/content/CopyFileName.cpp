#include "content/CopyFileName.h"

namespace nivor {
namespace {

/// Where the dot before the extension stands; -1 when there is none.
qsizetype extensionDot(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot == 0 ? -1 : dot;
}

}  // namespace

QString pathExtension(const QString& fileName)
{
    const qsizetype dot = extensionDot(fileName);
    return dot < 0 ? QString() : fileName.mid(dot + 1);
}

QString deletingPathExtension(const QString& fileName)
{
    const qsizetype dot = extensionDot(fileName);
    return dot < 0 ? fileName : fileName.left(dot);
}

QString numberedFileName(const QString& orgFileName, qsizetype number)
{
    return deletingPathExtension(orgFileName) + u'_' + QString::number(number) + u'.'
        + pathExtension(orgFileName);
}

QString makeCopyFileName(const QStringList& usedNames, const QString& orgFileName)
{
    const qsizetype count = usedNames.count(orgFileName);
    return count == 0 ? orgFileName : numberedFileName(orgFileName, count);
}

}  // namespace nivor
