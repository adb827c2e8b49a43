// What a drag does without an X server. How it fares with real file managers is shown by
// tests/gui/drag-out.

#include "app/FileDrag.h"
#include "app/DirectSaveMimeData.h"

#include <QWidget>

#include <gtest/gtest.h>

using namespace nivor;

namespace {

TEST(FileDrag, IsNotPossibleWithoutAnXServer)
{
    EXPECT_FALSE(FileDrag::isPossible());
}

TEST(FileDrag, DoesNothingWhereItIsNotPossible)
{
    FileDrag drag({.droppedOnto = [](const QUrl&) { ADD_FAILURE() << "dropped"; },
                   .droppedNowhereNamed = [] { ADD_FAILURE() << "dropped"; }});
    QWidget source;
    drag.exec(&source, {QStringLiteral("A.JPG")}, {});
    EXPECT_TRUE(source.children().isEmpty());
}

TEST(DirectSaveMimeData, OffersNothingButADirectSave)
{
    const DirectSaveMimeData data(QStringLiteral("A.JPG"), [](const QUrl&) {});
    EXPECT_EQ(data.formats(), QStringList{QStringLiteral("XdndDirectSave0")});
    EXPECT_TRUE(data.hasFormat(QStringLiteral("XdndDirectSave0")));
    EXPECT_FALSE(data.hasUrls());
    EXPECT_FALSE(data.hasText());
    EXPECT_TRUE(data.data(QStringLiteral("text/uri-list")).isEmpty());
}

TEST(DirectSaveMimeData, AnswersWithAnErrorWhenNoFolderIsNamed)
{
    const DirectSaveMimeData data(QStringLiteral("A.JPG"),
                                  [](const QUrl&) { ADD_FAILURE() << "named"; });
    EXPECT_EQ(data.data(QStringLiteral("XdndDirectSave0")), QByteArray("E"));
}

}  // namespace
