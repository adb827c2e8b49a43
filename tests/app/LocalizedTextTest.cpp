#include "app/LocalizedText.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

using namespace nivor;

namespace {

QString contentsOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// Every key that the code knows.
QSet<QString> keysInCode()
{
    const QString source = contentsOf(QStringLiteral(NIVOR_TEXT_KEYS));
    const QRegularExpression constant(QStringLiteral("const char\\* (\\w+) = \"(\\w+)\""));
    QSet<QString> keys;
    for (const auto& match : constant.globalMatch(source)) {
        EXPECT_EQ(match.captured(1), match.captured(2));
        keys.insert(match.captured(2));
    }
    return keys;
}

QMap<QString, QString> table(const QString& language)
{
    QXmlStreamReader xml(contentsOf(QStringLiteral(NIVOR_TEXT_TABLES) + QStringLiteral("/nivor_")
                                    + language + QStringLiteral(".ts")));
    QMap<QString, QString> texts;
    QString key;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QStringLiteral("message"))
            key = xml.attributes().value(QStringLiteral("id")).toString();
        if (xml.isStartElement() && xml.name() == QStringLiteral("translation"))
            texts.insert(key, xml.readElementText());
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

TEST(LocalizedText, EveryKeyHasItsTextAndEveryTextItsKey)
{
    const QMap<QString, QString> texts = table(QStringLiteral("en"));
    const QSet<QString> keys = keysInCode();
    EXPECT_GT(keys.size(), 10);
    EXPECT_EQ(QSet<QString>(texts.keyBegin(), texts.keyEnd()), keys);
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        EXPECT_FALSE(text->isEmpty()) << text.key().toStdString();
        // The table that was compiled in is this one.
        EXPECT_EQ(localizedText(text.key().toUtf8().constData()), *text);
    }
}

TEST(LocalizedText, AMissingTextShowsItsKey)
{
    EXPECT_EQ(localizedText("noSuchMessage"), QStringLiteral("noSuchMessage"));
    EXPECT_EQ(localizedText("noSuchMessage", QStringLiteral("a"), QStringLiteral("b")),
              QStringLiteral("noSuchMessage"));
}

TEST(LocalizedText, ArgumentsAreNeverTakenForPlaces)
{
    EXPECT_EQ(localizedText(TextKey::copyingMessage, QStringLiteral("%2"), QStringLiteral("%1")),
              QStringLiteral("Copying %2 to \u201C%1\u201D"));
    EXPECT_EQ(localizedText("100% of %1 %3 %", QStringLiteral("it")),
              QStringLiteral("100% of it %3 %"));
}

}  // namespace
