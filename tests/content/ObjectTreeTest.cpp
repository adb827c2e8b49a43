#include "content/ObjectTree.h"

#include "content/FileGlob.h"
#include "content/ObjectSelection.h"
#include "datasets/ObjectInfoData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

using namespace nivor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class ObjectTreeTest : public ::testing::Test {
protected:
    void add(unsigned handle, unsigned parent, const QString& name, bool isFolder = false)
    {
        auto object = std::make_shared<ObjectInfoData>();
        object->setMyHandle(QString::number(handle));
        object->setParentObject(QString::number(parent));
        object->setFileName(name + QChar(u'\0'));
        object->setObjectFormat(isFolder ? 0x3001 : 0x3801);
        objects.push_back(std::move(object));
    }

    void addFolder(unsigned handle, unsigned parent, const QString& name)
    {
        add(handle, parent, name, true);
    }

    /// A card as cameras have it.
    void addCard()
    {
        addFolder(1, 0, QStringLiteral("DCIM"));
        addFolder(2, 1, QStringLiteral("100NIVOR"));
        addFolder(3, 1, QStringLiteral("101NIVOR"));
        add(10, 2, QStringLiteral("IMG_0001.JPG"));
        add(11, 2, QStringLiteral("IMG_0002.MOV"));
        add(12, 3, QStringLiteral("IMG_0001.JPG"));
        addFolder(4, 0, QStringLiteral("EMPTY"));
        add(13, 0, QStringLiteral("10"));
        add(14, 0, QStringLiteral("A[1].TXT"));
    }

    std::vector<std::string> paths() const
    {
        std::vector<std::string> paths;
        const ObjectTree tree(objects);
        for (std::size_t i = 0; i < tree.nodes().size(); ++i)
            paths.push_back(tree.path(i).toStdString());
        return paths;
    }

    ObjectSelection select(const QStringList& words) const
    {
        return selectObjects(ObjectTree(objects), words);
    }

    std::vector<unsigned> selected(const QString& word) const
    {
        std::vector<unsigned> handles;
        for (const auto& file : select({word}).files)
            handles.push_back(file->myHandle().toUInt());
        return handles;
    }

    ObjectList objects;
};

TEST_F(ObjectTreeTest, FoldersStandBeforeTheirContents)
{
    addCard();
    EXPECT_THAT(paths(),
                ElementsAre("DCIM", "DCIM/100NIVOR", "DCIM/100NIVOR/IMG_0001.JPG",
                            "DCIM/100NIVOR/IMG_0002.MOV", "DCIM/101NIVOR",
                            "DCIM/101NIVOR/IMG_0001.JPG", "EMPTY", "10", "A[1].TXT"));
    const ObjectTree tree(objects);
    EXPECT_EQ(tree.nodes().at(2).depth, 2U);
    EXPECT_EQ(tree.descendantCount(0), 5U);
    EXPECT_EQ(tree.descendantCount(1), 2U);
    EXPECT_EQ(tree.descendantCount(8), 0U);
}

TEST_F(ObjectTreeTest, ContentsMayComeBeforeTheirFolder)
{
    add(10, 1, QStringLiteral("A"));
    addFolder(1, 0, QStringLiteral("F"));
    EXPECT_THAT(paths(), ElementsAre("F", "F/A"));
}

TEST_F(ObjectTreeTest, OrphansStandAtTheTop)
{
    add(10, 4711, QStringLiteral("ORPHAN"));
    add(11, 10, QStringLiteral("IN_A_FILE"));
    EXPECT_THAT(paths(), ElementsAre("ORPHAN", "IN_A_FILE"));
}

TEST_F(ObjectTreeTest, CirclesAreOpened)
{
    addFolder(1, 2, QStringLiteral("A"));
    addFolder(2, 1, QStringLiteral("B"));
    addFolder(3, 3, QStringLiteral("SELF"));
    add(4, 2, QStringLiteral("X"));
    EXPECT_THAT(paths(), ElementsAre("SELF", "A", "A/B", "A/B/X"));
}

TEST_F(ObjectTreeTest, WhatLiesTooDeepIsNotLost)
{
    for (unsigned i = 1; i <= 200; ++i)
        addFolder(i, i - 1, QStringLiteral("F"));
    const ObjectTree tree(objects);
    EXPECT_EQ(tree.nodes().size(), 200U);
    for (std::size_t i = 0; i < tree.nodes().size(); ++i)
        EXPECT_LE(tree.nodes()[i].depth, ObjectTree::deepestLevel);
}

TEST_F(ObjectTreeTest, AHundredThousandObjectsTakeNoTime)
{
    for (unsigned i = 1; i <= 100'000; ++i)
        addFolder(i, i % 1000, QStringLiteral("F"));
    const auto began = std::chrono::steady_clock::now();
    const ObjectTree tree(objects);
    EXPECT_EQ(tree.nodes().size(), 100'000U);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(10));
}

TEST_F(ObjectTreeTest, ASlashInANameMakesNoFolder)
{
    add(1, 0, QStringLiteral("a/b"));
    add(2, 0, QString());
    EXPECT_THAT(paths(), ElementsAre("a_b", "_"));
}

TEST_F(ObjectTreeTest, ANameSelectsAllThatAreCalledSo)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("IMG_0001.JPG")), ElementsAre(10U, 12U));
    EXPECT_THAT(selected(QStringLiteral("img_0001.jpg")), IsEmpty());
}

TEST_F(ObjectTreeTest, APathSelectsOne)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("DCIM/101NIVOR/IMG_0001.JPG")), ElementsAre(12U));
    EXPECT_THAT(selected(QStringLiteral("/DCIM/101NIVOR/IMG_0001.JPG")), ElementsAre(12U));
    EXPECT_THAT(selected(QStringLiteral("/IMG_0001.JPG")), IsEmpty());
}

TEST_F(ObjectTreeTest, AHandleSelectsItsObjectUnlessAFileIsCalledSo)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("12")), ElementsAre(12U));
    EXPECT_THAT(selected(QStringLiteral("0xb")), ElementsAre(11U));
    EXPECT_THAT(selected(QStringLiteral("10")), ElementsAre(13U));
    EXPECT_THAT(selected(QStringLiteral("0xA")), ElementsAre(10U));
    EXPECT_THAT(selected(QStringLiteral("4294967296")), IsEmpty());
}

TEST_F(ObjectTreeTest, PatternsSelectByNameOrPath)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("*.JPG")), ElementsAre(10U, 12U));
    EXPECT_THAT(selected(QStringLiteral("IMG_000[2-9].*")), ElementsAre(11U));
    EXPECT_THAT(selected(QStringLiteral("DCIM/*/IMG_0001.JPG")), ElementsAre(10U, 12U));
    EXPECT_THAT(selected(QStringLiteral("*/IMG_0001.JPG")), IsEmpty());
    EXPECT_THAT(selected(QStringLiteral("**/IMG_0001.JPG")), ElementsAre(10U, 12U));
}

TEST_F(ObjectTreeTest, ANameThatLooksLikeAPatternIsTakenAsItIs)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("A[1].TXT")), ElementsAre(14U));
}

TEST_F(ObjectTreeTest, AFolderStandsForItsFiles)
{
    addCard();
    EXPECT_THAT(selected(QStringLiteral("DCIM/100NIVOR")), ElementsAre(10U, 11U));
    EXPECT_THAT(selected(QStringLiteral("DCIM/")), ElementsAre(10U, 11U, 12U));
    EXPECT_THAT(selected(QStringLiteral("3")), ElementsAre(12U));
}

TEST_F(ObjectTreeTest, EachFileIsSelectedOnce)
{
    addCard();
    const auto selection =
        select({QStringLiteral("12"), QStringLiteral("*.JPG"), QStringLiteral("DCIM")});
    ASSERT_EQ(selection.files.size(), 3U);
    EXPECT_EQ(selection.files.front()->myHandle(), QStringLiteral("12"));
    EXPECT_TRUE(selection.isComplete());
}

TEST_F(ObjectTreeTest, WordsWithoutAFileAreNamed)
{
    addCard();
    const auto selection =
        select({QStringLiteral("NOPE"), QStringLiteral("EMPTY"), QStringLiteral("11")});
    EXPECT_EQ(selection.unmatched, QStringList(QStringLiteral("NOPE")));
    EXPECT_EQ(selection.emptyHanded, QStringList(QStringLiteral("EMPTY")));
    EXPECT_EQ(selection.files.size(), 1U);
    EXPECT_FALSE(selection.isComplete());
}

TEST_F(ObjectTreeTest, BothWaysToWriteAnAccentMatch)
{
    add(1, 0, QStringLiteral("caf\u00E9.jpg"));
    EXPECT_THAT(selected(QStringLiteral("cafe\u0301.jpg")), ElementsAre(1U));
    EXPECT_THAT(selected(QStringLiteral("c*e\u0301.jpg")), ElementsAre(1U));
}

bool matches(const char* pattern, const char* name)
{
    return FileGlob(QString::fromUtf8(pattern)).matchesName(QString::fromUtf8(name));
}

TEST(FileGlob, Wildcards)
{
    EXPECT_TRUE(matches("*", ""));
    EXPECT_TRUE(matches("a*c", "abbbc"));
    EXPECT_TRUE(matches("a*b*c", "axxbxxc"));
    EXPECT_FALSE(matches("a*c", "abbbcd"));
    EXPECT_TRUE(matches("??", "ab"));
    EXPECT_FALSE(matches("??", "a"));
    EXPECT_TRUE(matches("?.jpg", "🎉.jpg"));
    EXPECT_FALSE(matches("", "a"));
}

TEST(FileGlob, Sets)
{
    EXPECT_TRUE(matches("[abc]", "b"));
    EXPECT_FALSE(matches("[abc]", "d"));
    EXPECT_TRUE(matches("[a-cx]", "x"));
    EXPECT_TRUE(matches("[!a-c]", "d"));
    EXPECT_FALSE(matches("[!a-c]", "b"));
    EXPECT_TRUE(matches("[]]", "]"));
    EXPECT_TRUE(matches("[a-]", "-"));
    EXPECT_TRUE(matches("[", "["));
    EXPECT_TRUE(matches("[a", "[a"));
    EXPECT_TRUE(matches("a[", "a["));
}

TEST(FileGlob, ABackslashTakesTheNextCharacterLiterally)
{
    EXPECT_TRUE(matches("\\*", "*"));
    EXPECT_FALSE(matches("\\*", "a"));
    EXPECT_TRUE(matches("a\\", "a\\"));
}

TEST(FileGlob, NoPatternTakesForever)
{
    const QString pattern = QStringLiteral("*a").repeated(100) + QStringLiteral("b");
    const auto began = std::chrono::steady_clock::now();
    EXPECT_FALSE(FileGlob(pattern).matchesName(QString(5000, u'a')));
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
}

TEST(FileGlob, Paths)
{
    const auto matchesPath = [](const char* pattern, const char* path) {
        return FileGlob(QString::fromUtf8(pattern)).matchesPath(QString::fromUtf8(path));
    };
    EXPECT_TRUE(matchesPath("a/*", "a/b"));
    EXPECT_FALSE(matchesPath("a/*", "a/b/c"));
    EXPECT_TRUE(matchesPath("a/**", "a/b/c"));
    EXPECT_TRUE(matchesPath("a/**/c", "a/c"));
    EXPECT_TRUE(matchesPath("**/c", "a/b/c"));
    EXPECT_TRUE(matchesPath("a//b/", "a/b"));
    EXPECT_FALSE(matchesPath("a/b", "a"));
}

}  // namespace
