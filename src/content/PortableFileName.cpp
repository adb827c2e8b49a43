#include "content/PortableFileName.h"

#include "content/LocalFileName.h"

#include <QRegularExpression>

namespace nivor {
namespace {

bool isDeviceName(const QString& name)
{
    static const QRegularExpression devices(QRegularExpression::anchoredPattern(QStringLiteral(
                                                "(con|prn|aux|nul|(com|lpt)[1-9])\\s*(\\..*)?")),
                                            QRegularExpression::CaseInsensitiveOption);
    return devices.match(name).hasMatch();
}

}  // namespace

QString portableFileName(const QString& localName)
{
    QString name = localName;
    for (QChar& unit : name) {
        if (QStringLiteral("\\:*?\"<>|").contains(unit))
            unit = u'_';
    }
    for (qsizetype i = name.size(); i > 0 && (name[i - 1] == u'.' || name[i - 1] == u' '); --i)
        name[i - 1] = u'_';
    return isDeviceName(name) ? localFileName(u'_' + name) : name;
}

}  // namespace nivor
