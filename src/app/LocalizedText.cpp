#include "app/LocalizedText.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
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

const QString english = QStringLiteral("en");

QString tablePath(const QString& language)
{
    return QStringLiteral(":/translations/nivor_%1.qm").arg(language);
}

bool hasTable(const QString& language)
{
    return QFile::exists(tablePath(language));
}

void installTable(const QString& language)
{
    auto* table = new QTranslator(QCoreApplication::instance());
    if (table->load(tablePath(language)))
        QCoreApplication::installTranslator(table);
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

QString localizedCount(const char* key, int count)
{
    return qtTrId(key, count);
}

void installTexts()
{
    for (const QString& language : QLocale().uiLanguages()) {
        // "zh-Hans-CN" is the table "zh_CN".
        const QLocale locale(language);
        if (hasTable(locale.name()))
            return installTexts(locale.name());
        if (hasTable(locale.name().section(u'_', 0, 0)))
            return installTexts(locale.name().section(u'_', 0, 0));
    }
    installTexts(english);
}

void installTexts(const QString& language)
{
    // The buttons of Qt's own dialogs, where its tables are installed.
    auto* ofQt = new QTranslator(QCoreApplication::instance());
    if (ofQt->load(QStringLiteral("qtbase_") + language,
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(ofQt);
    // The one that was installed last is asked first.
    installTable(english);
    if (language != english)
        installTable(language);
}

}  // namespace nivor
