#include "content/LocalFileName.h"

#include "content/VisibleName.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace nivor;
using nivor::test::text;

namespace {

TEST(LocalFileName, AnOrdinaryNameStays)
{
    for (const char* name :
         {"IMG_0001.JPG", "写真 1.jpg", "a b", ".profile", "...", "🎉.mov", "-rf"})
        EXPECT_EQ(localFileName(text(name)), text(name)) << name;
}

TEST(LocalFileName, APathCannotLeaveTheFolder)
{
    EXPECT_EQ(localFileName(text("../../etc/passwd")), text(".._.._etc_passwd"));
    EXPECT_EQ(localFileName(text("/etc/passwd")), text("_etc_passwd"));
    EXPECT_EQ(localFileName(text("a/")), text("a_"));
    EXPECT_EQ(localFileName(text("/")), text("_"));
}

TEST(LocalFileName, DotsAndNothingBecomeAnUnderscore)
{
    EXPECT_EQ(localFileName(text("")), text("_"));
    EXPECT_EQ(localFileName(text(".")), text("_"));
    EXPECT_EQ(localFileName(text("..")), text("_"));
    EXPECT_EQ(localFileName(QString()), text("_"));
}

TEST(LocalFileName, ControlCharactersBecomeUnderscores)
{
    const QString name = QString(QChar(u'\0')) + QStringLiteral("a\n\x1b[31m\x7f")
        + QChar(char16_t{0x80}) + QChar(char16_t{0x9F}) + QChar(char16_t{0xA0});
    EXPECT_EQ(localFileName(name), text("_a__[31m___") + QChar(char16_t{0xA0}));
}

TEST(LocalFileName, MarksOfDirectionAndLineSeparatorsBecomeUnderscores)
{
    EXPECT_EQ(localFileName(QStringLiteral("photo_\u202Egpj.exe")), text("photo__gpj.exe"));
    EXPECT_EQ(localFileName(QStringLiteral("\u061C\u200E\u200F\u202A\u2066\u2069\u2028\u2029")),
              text("________"));
    // Joiners are needed to write some languages, and change no order.
    EXPECT_EQ(localFileName(QStringLiteral("a\u200Db\u200C")), QStringLiteral("a\u200Db\u200C"));
}

TEST(LocalFileName, HalvesOfSurrogatePairsBecomeUnderscores)
{
    const QChar high(char16_t{0xD83C});
    const QChar low(char16_t{0xDF89});
    EXPECT_EQ(localFileName(QString(high) + u'a'), text("_a"));
    EXPECT_EQ(localFileName(QString(low) + u'a'), text("_a"));
    EXPECT_EQ(localFileName(u'a' + QString(high)), text("a_"));
    EXPECT_EQ(localFileName(QString(low) + high), text("__"));
    EXPECT_EQ(localFileName(QString(high) + high + low), QString(u'_') + high + low);
}

TEST(LocalFileName, AnOverLongNameIsCutBeforeItsExtension)
{
    const QString longest = QString(251, u'a') + text(".JPG");
    EXPECT_EQ(localFileName(longest), longest);
    EXPECT_EQ(localFileName(QString(252, u'a') + text(".JPG")), longest);
    EXPECT_EQ(localFileName(QString(1000, u'a') + text(".JPG")), longest);
    EXPECT_EQ(localFileName(QString(1000, u'a')), QString(255, u'a'));
    EXPECT_EQ(localFileName(QString(300, u'a') + u'.'), QString(255, u'a'));
}

TEST(LocalFileName, NoCharacterIsSplit)
{
    // Three bytes each: 83 of them and ".JPG" take 253 bytes, 84 would take 256.
    EXPECT_EQ(localFileName(QString(255, QChar(u'\u5199')) + text(".JPG")),
              QString(83, QChar(u'\u5199')) + text(".JPG"));
    const QString emoji = text("🎉");
    const QString cut = localFileName(emoji.repeated(127) + text(".JPG"));
    EXPECT_EQ(cut, emoji.repeated(62) + text(".JPG"));
    EXPECT_EQ(localFileName(text("a") + emoji.repeated(127)), text("a") + emoji.repeated(63));
}

TEST(LocalFileName, AnEndlessExtensionIsNone)
{
    EXPECT_EQ(localFileName(text("a.") + QString(1000, u'b')), text("a.") + QString(253, u'b'));
}

TEST(LocalFileName, TheNumberedVariantFitsAsWell)
{
    EXPECT_EQ(numberedLocalFileName(text("IMG.JPG"), 7), text("IMG_7.JPG"));
    EXPECT_EQ(numberedLocalFileName(QString(251, u'a') + text(".JPG"), 12),
              QString(248, u'a') + text("_12.JPG"));
    EXPECT_EQ(numberedLocalFileName(QString(255, u'a'), 1), QString(252, u'a') + text("_1."));
    EXPECT_EQ(numberedLocalFileName(text("🎉").repeated(62) + text(".JPG"), 1234),
              text("🎉").repeated(61) + text("_1234.JPG"));
    EXPECT_EQ(numberedLocalFileName(text("a.") + QString(253, u'b'), 1),
              text("a_1.") + QString(251, u'b'));
}

TEST(VisibleName, WhatIsHarmlessStays)
{
    EXPECT_EQ(visibleName(text("写真 🎉 é.JPG")), text("写真 🎉 é.JPG"));
    EXPECT_EQ(visibleName(QString()), QString());
}

TEST(VisibleName, ControlCharactersAreShown)
{
    EXPECT_EQ(visibleName(QStringLiteral("a\x1b[2J\n\x7f")), text("a␛[2J␊␡"));
    EXPECT_EQ(visibleName(QString(QChar(u'\0'))), text("␀"));
    EXPECT_EQ(visibleName(QString(QChar(char16_t{0x9B}))), text("\\x9b"));
}

TEST(VisibleName, DirectionMarksAndSeparatorsAreShown)
{
    EXPECT_EQ(visibleName(QStringLiteral("a\u202Egpj.exe")), text("a\\u202egpj.exe"));
    EXPECT_EQ(visibleName(QStringLiteral("\u2066\u200F\u061C\u2028")),
              text("\\u2066\\u200f\\u061c\\u2028"));
}

TEST(VisibleName, HalvesOfSurrogatePairsAreReplaced)
{
    EXPECT_EQ(visibleName(QString(QChar(char16_t{0xD83C})) + u'a'), text("\uFFFDa"));
}

}  // namespace
