#include "app/LocalizedText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <array>

using namespace nivor;

namespace {

struct Language {
    const char* name;
    qsizetype numerusForms;
};

constexpr std::array<Language, 6> languages{
    {{"en", 2}, {"de", 2}, {"fr", 2}, {"es", 2}, {"ja", 1}, {"zh_CN", 1}}};

constexpr std::array menuTitles{TextKey::menuFile, TextKey::menuEdit, TextKey::menuView,
                                TextKey::menuHelp, TextKey::menuSimulation};

/// A text with its numerus forms; one form when it is the same for every number.
struct Text {
    bool isCounted = false;
    QStringList forms{};
};

using Table = QMap<QString, Text>;

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

QString tableName(const char* language)
{
    return QStringLiteral("nivor_") + QString::fromLatin1(language);
}

Table table(const char* language)
{
    QXmlStreamReader xml(contentsOf(QStringLiteral(NIVOR_TEXT_TABLES) + u'/' + tableName(language)
                                    + QStringLiteral(".ts")));
    Table texts;
    QString key;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == QStringLiteral("TS")) {
            EXPECT_EQ(attributes.value(QStringLiteral("language")), QString::fromLatin1(language));
        } else if (xml.name() == QStringLiteral("message")) {
            key = attributes.value(QStringLiteral("id")).toString();
            EXPECT_FALSE(texts.contains(key)) << key.toStdString();
            texts[key].isCounted = attributes.hasAttribute(QStringLiteral("numerus"));
        } else if (xml.name() == QStringLiteral("translation")) {
            // An unfinished one would be left out of the compiled table.
            EXPECT_FALSE(attributes.hasAttribute(QStringLiteral("type"))) << key.toStdString();
            if (!texts[key].isCounted)
                texts[key].forms.append(xml.readElementText());
        } else if (xml.name() == QStringLiteral("numerusform")) {
            texts[key].forms.append(xml.readElementText());
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

/// The places that are filled in, in the order of their names.
QStringList placesIn(const QString& text)
{
    static const QRegularExpression place(QStringLiteral("%(\\d|n)"));
    QStringList places;
    for (const auto& match : place.globalMatch(text))
        places.append(match.captured());
    places.sort();
    return places;
}

/// The letter after the "&"; null when there is none.
QChar acceleratorIn(const QString& text)
{
    const qsizetype mark = text.indexOf(u'&');
    return mark < 0 || mark + 1 == text.size() ? QChar() : text.at(mark + 1).toUpper();
}

QList<QTranslator*> loadedTables()
{
    return QCoreApplication::instance()->findChildren<QTranslator*>();
}

/// Puts the loaded tables aside, loads those of one language, and puts all back at the end.
class OtherTexts {
public:
    explicit OtherTexts(const QString& language)
        : usual_(loadedTables())
    {
        for (QTranslator* loaded : usual_)
            QCoreApplication::removeTranslator(loaded);
        installTexts(language);
    }

    ~OtherTexts()
    {
        while (removeLastTable()) { }
        for (QTranslator* loaded : usual_)
            QCoreApplication::installTranslator(loaded);
    }

    OtherTexts(const OtherTexts&) = delete;
    OtherTexts& operator=(const OtherTexts&) = delete;

    /// Takes away the table that is asked first; false when there was none left.
    bool removeLastTable()
    {
        const QList<QTranslator*> loaded = loadedTables();
        if (loaded.size() == usual_.size())
            return false;
        // Uninstalls itself.
        delete loaded.last();
        return true;
    }

private:
    QList<QTranslator*> usual_;
};

TEST(LocalizedText, EveryKeyHasItsTextAndEveryTextItsKey)
{
    const Table texts = table("en");
    const QSet<QString> keys = keysInCode();
    EXPECT_GT(keys.size(), 10);
    EXPECT_EQ(QSet<QString>(texts.keyBegin(), texts.keyEnd()), keys);
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        SCOPED_TRACE(text.key().toStdString());
        const QByteArray key = text.key().toUtf8();
        // The table that was compiled in is this one.
        if (!text->isCounted) {
            EXPECT_EQ(localizedText(key.constData()), text->forms.value(0));
            continue;
        }
        for (int count = 1; count <= 2; ++count) {
            EXPECT_EQ(
                localizedCount(key.constData(), count),
                text->forms.value(count - 1).replace(QStringLiteral("%n"), QString::number(count)));
        }
    }
}

TEST(LocalizedText, EveryTableIsOneOfTheLanguages)
{
    QStringList names;
    for (const Language& language : languages)
        names.append(tableName(language.name) + QStringLiteral(".ts"));
    names.sort();
    EXPECT_EQ(QDir(QStringLiteral(NIVOR_TEXT_TABLES))
                  .entryList({QStringLiteral("*.ts")}, QDir::Files, QDir::Name),
              names);
}

TEST(LocalizedText, EveryTableHasTheTextsOfTheEnglishOne)
{
    const Table english = table("en");
    for (const Language& language : languages) {
        SCOPED_TRACE(language.name);
        const Table texts = table(language.name);
        EXPECT_EQ(texts.keys(), english.keys());
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            SCOPED_TRACE(text.key().toStdString());
            const Text original = english.value(text.key());
            EXPECT_EQ(text->isCounted, original.isCounted);
            EXPECT_EQ(text->forms.size(), original.isCounted ? language.numerusForms : 1);
            for (const QString& form : text->forms) {
                EXPECT_FALSE(form.trimmed().isEmpty());
                EXPECT_EQ(placesIn(form), placesIn(original.forms.value(0)));
                EXPECT_EQ(form.count(u'&'), original.forms.value(0).count(u'&'));
            }
        }
    }
}

TEST(LocalizedText, EveryTableIsCompiledIn)
{
    for (const Language& language : languages) {
        SCOPED_TRACE(language.name);
        QTranslator compiled;
        ASSERT_TRUE(compiled.load(QStringLiteral(":/translations/") + tableName(language.name)
                                  + QStringLiteral(".qm")));
        const Table texts = table(language.name);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            const QByteArray key = text.key().toUtf8();
            for (qsizetype form = 0; form < text->forms.size(); ++form) {
                const int count = text->isCounted ? static_cast<int>(form) + 1 : -1;
                EXPECT_EQ(compiled.translate(nullptr, key.constData(), nullptr, count),
                          text->forms.at(form));
            }
        }
    }
}

TEST(LocalizedText, EveryMenuHasAKeyOfItsOwn)
{
    for (const Language& language : languages) {
        SCOPED_TRACE(language.name);
        const Table texts = table(language.name);
        QSet<QChar> accelerators;
        for (const char* title : menuTitles) {
            const QString text = texts.value(QString::fromLatin1(title)).forms.value(0);
            EXPECT_TRUE(acceleratorIn(text).isLetter()) << text.toStdString();
            accelerators.insert(acceleratorIn(text));
        }
        EXPECT_EQ(accelerators.size(), static_cast<qsizetype>(menuTitles.size()));
    }
}

TEST(LocalizedText, TheTableOfALanguageLiesAboveTheEnglishOne)
{
    OtherTexts german(QStringLiteral("de"));
    EXPECT_EQ(localizedText(TextKey::menuFile), QStringLiteral("&Datei"));
    EXPECT_EQ(localizedText(TextKey::copyingMessage, QStringLiteral("3"), QStringLiteral("Urlaub")),
              QStringLiteral("Kopieren von 3 nach \u201EUrlaub\u201C"));
    EXPECT_EQ(localizedCount(TextKey::statusItems, 1), QStringLiteral("1 Element"));
    EXPECT_EQ(localizedCount(TextKey::statusItems, 2), QStringLiteral("2 Elemente"));
    EXPECT_EQ(localizedText("noSuchMessage"), QStringLiteral("noSuchMessage"));

    // What the German table does not have is looked for in the English one, then nowhere.
    ASSERT_TRUE(german.removeLastTable());
    EXPECT_EQ(localizedText(TextKey::menuFile), QStringLiteral("&File"));
    ASSERT_TRUE(german.removeLastTable());
    EXPECT_EQ(localizedText(TextKey::menuFile), QStringLiteral("menuFile"));
}

TEST(LocalizedText, ALanguageWithOneNumerusFormUsesItForEveryNumber)
{
    const OtherTexts japanese(QStringLiteral("ja"));
    EXPECT_EQ(localizedCount(TextKey::statusItems, 1), QStringLiteral("1\u500B\u306E\u9805\u76EE"));
    EXPECT_EQ(localizedCount(TextKey::statusItems, 2), QStringLiteral("2\u500B\u306E\u9805\u76EE"));
}

TEST(LocalizedText, ALanguageWithoutATableIsEnglish)
{
    const OtherTexts unknown(QStringLiteral("xx"));
    EXPECT_EQ(localizedText(TextKey::menuFile), QStringLiteral("&File"));
}

TEST(LocalizedText, OtherTextsLeaveTheUsualOnesBehind)
{
    const QString usual = localizedText(TextKey::menuFile);
    const QList<QTranslator*> loaded = loadedTables();
    {
        const OtherTexts french(QStringLiteral("fr"));
        EXPECT_EQ(localizedText(TextKey::menuFile), QStringLiteral("&Fichier"));
    }
    EXPECT_EQ(localizedText(TextKey::menuFile), usual);
    EXPECT_EQ(loadedTables(), loaded);
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
