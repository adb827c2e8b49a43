#include "app/ObjectListModel.h"

#include "datasets/ObjectInfoData.h"

#include <QAbstractItemModelTester>
#include <QDateTime>

#include <gmock/gmock.h>

using namespace nivor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::uint16_t folderFormat = 0x3001;
constexpr std::uint16_t fileFormat = 0x3801;

std::shared_ptr<ObjectInfoData> object(int handle, int parent, const char* name,
                                       std::uint16_t format = fileFormat)
{
    auto made = std::make_shared<ObjectInfoData>();
    made->setMyHandle(QString::number(handle));
    made->setParentObject(QString::number(parent));
    made->setFileName(QString::fromUtf8(name) + QChar(u'\0'));
    made->setObjectFormat(format);
    return made;
}

class ObjectListModelTest : public ::testing::Test {
protected:
    void show(ObjectList objects)
    {
        model.reload(std::make_shared<const ObjectList>(std::move(objects)));
    }

    std::vector<std::string> childrenOf(const QModelIndex& parent) const
    {
        std::vector<std::string> names;
        for (int row = 0; row < model.rowCount(parent); ++row)
            names.push_back(text(row, ObjectListModel::NameColumn, parent));
        return names;
    }

    std::string text(int row, int column, const QModelIndex& parent = {}) const
    {
        return model.index(row, column, parent).data().toString().toStdString();
    }

    QModelIndex top(int row) const { return model.index(row, 0); }

    ObjectListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ObjectListModelTest, AnEmptyListHasNoRows)
{
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 3);
    show({});
    EXPECT_EQ(model.rowCount(), 0);
    model.reload(nullptr);
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(ObjectListModelTest, ContentsStandInTheirFolderInTheOrderOfTheList)
{
    show({object(3, 1, "B"), object(1, 0, "DCIM", folderFormat), object(2, 1, "A"),
          object(4, 0, "TOP")});
    EXPECT_THAT(childrenOf({}), ElementsAre("DCIM", "TOP"));
    EXPECT_THAT(childrenOf(top(0)), ElementsAre("B", "A"));
    EXPECT_EQ(model.size(), 4);
}

TEST_F(ObjectListModelTest, OnlyWhatHasContentsCanBeExpanded)
{
    show({object(1, 0, "FULL", folderFormat), object(2, 0, "EMPTY", folderFormat),
          object(3, 1, "A"), object(4, 0, "FILE")});
    EXPECT_TRUE(model.hasChildren(top(0)));
    EXPECT_FALSE(model.hasChildren(top(1)));
    EXPECT_FALSE(model.hasChildren(top(2)));
    EXPECT_FALSE(model.flags(top(0)).testFlag(Qt::ItemNeverHasChildren));
    EXPECT_TRUE(model.flags(top(1)).testFlag(Qt::ItemNeverHasChildren));
}

TEST_F(ObjectListModelTest, ParentsAndRowsLeadBack)
{
    show({object(1, 0, "DCIM", folderFormat), object(2, 1, "SUB", folderFormat), object(3, 2, "A"),
          object(4, 2, "B")});
    const QModelIndex sub = model.index(0, 0, top(0));
    const QModelIndex b = model.index(1, 0, sub);
    EXPECT_EQ(b.parent(), sub);
    EXPECT_EQ(sub.parent(), top(0));
    EXPECT_FALSE(top(0).parent().isValid());
    EXPECT_EQ(model.indexOf(model.object(b).get()), b);
    EXPECT_EQ(model.object(model.index(1, 2, sub)), model.object(b));
    EXPECT_TRUE(model.isTopLevel(top(0)));
    EXPECT_FALSE(model.isTopLevel(sub));
}

TEST_F(ObjectListModelTest, WhatIsAtTheTopShowsAName)
{
    auto file = object(1, 0, "TOP.JPG");
    file->setObjectCompressedSize(1000);
    file->setModifiedDate(QDateTime(QDate(2026, 1, 2), QTime(3, 4)));
    show({file});
    EXPECT_EQ(text(0, 0), "TOP.JPG");
    EXPECT_FALSE(model.index(0, 1).data().isValid());
    EXPECT_FALSE(model.index(0, 2).data().isValid());
}

TEST_F(ObjectListModelTest, WhatIsInAFolderShowsDateAndSize)
{
    auto file = object(2, 1, "A.JPG");
    file->setObjectCompressedSize(18'449'000);
    const QDateTime date(QDate(2026, 1, 2), QTime(3, 4));
    file->setModifiedDate(date);
    show({object(1, 0, "DCIM", folderFormat), file});
    EXPECT_EQ(text(0, 1, top(0)), QLocale().toString(date, QLocale::ShortFormat).toStdString());
    EXPECT_EQ(text(0, 2, top(0)), "18.4 MB");
}

TEST_F(ObjectListModelTest, NoDateAndNoSizeAreEmptyCells)
{
    show({object(1, 0, "DCIM", folderFormat), object(2, 1, "EMPTY.JPG")});
    EXPECT_FALSE(model.index(0, 1, top(0)).data().isValid());
    EXPECT_FALSE(model.index(0, 2, top(0)).data().isValid());
}

TEST_F(ObjectListModelTest, AColumnThatIsNoneHasNoCells)
{
    show({object(1, 0, "A")});
    EXPECT_FALSE(model.index(0, 3).isValid());
    EXPECT_FALSE(model.headerData(3, Qt::Horizontal, Qt::DisplayRole).isValid());
}

TEST_F(ObjectListModelTest, ColumnsHaveTheirTitles)
{
    QStringList titles;
    for (int column = 0; column < 3; ++column)
        titles.push_back(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    EXPECT_EQ(
        titles,
        QStringList({QStringLiteral("Name"), QStringLiteral("Modified"), QStringLiteral("Size")}));
}

TEST_F(ObjectListModelTest, ANameCannotActOnTheList)
{
    show({object(1, 0, "A\nB")});
    EXPECT_EQ(text(0, 0), "A\u240AB");
}

TEST_F(ObjectListModelTest, WhatNamesAParentThatIsNowhereIsNotShown)
{
    show({object(1, 0, "A"), object(2, 99, "LOST")});
    EXPECT_THAT(childrenOf({}), ElementsAre("A"));
    EXPECT_EQ(model.size(), 1);
}

TEST_F(ObjectListModelTest, CirclesEndNowhere)
{
    show({object(1, 2, "A", folderFormat), object(2, 1, "B", folderFormat),
          object(3, 3, "SELF", folderFormat), object(0, 0, "ZERO", folderFormat)});
    EXPECT_THAT(childrenOf({}), ElementsAre("ZERO"));
    EXPECT_THAT(childrenOf(top(0)), IsEmpty());
}

TEST_F(ObjectListModelTest, TheDepthHasABound)
{
    ObjectList objects;
    for (int i = 1; i <= 1000; ++i)
        objects.push_back(object(i, i - 1, "F", folderFormat));
    show(std::move(objects));
    EXPECT_EQ(model.size(), ObjectListModel::deepestLevel);
}

TEST_F(ObjectListModelTest, AReloadShowsTheNewList)
{
    show({object(1, 0, "A")});
    const auto before = model.object(top(0));
    show({object(2, 0, "B"), object(3, 0, "C")});
    EXPECT_THAT(childrenOf({}), ElementsAre("B", "C"));
    EXPECT_FALSE(model.indexOf(before.get()).isValid());
}

}  // namespace
