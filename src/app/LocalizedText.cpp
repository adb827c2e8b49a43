#include "app/LocalizedText.h"

#include <QCoreApplication>
#include <QTranslator>

namespace nivor {
namespace {

/// One pass over the text, so that what an argument holds is never taken for a place.
QString filledIn(const QString& text, const QStringList& arguments)
{
    QString filled;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPlace = text.at(i) == u'%' && i + 1 < text.size();
        const int number = isPlace ? text.at(i + 1).digitValue() : 0;
        if (number >= 1 && number <= arguments.size()) {
            filled += arguments.at(number - 1);
            ++i;
        } else {
            filled += text.at(i);
        }
    }
    return filled;
}

}  // namespace

QString localizedText(const char* key)
{
    return qtTrId(key);
}

QString localizedText(const char* key, const QString& first)
{
    return filledIn(qtTrId(key), {first});
}

QString localizedText(const char* key, const QString& first, const QString& second)
{
    return filledIn(qtTrId(key), {first, second});
}

void installTexts()
{
    auto* table = new QTranslator(QCoreApplication::instance());
    if (table->load(QStringLiteral(":/translations/nivor_en.qm")))
        QCoreApplication::installTranslator(table);
}

}  // namespace nivor
