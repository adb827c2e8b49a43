#include "content/SortDescriptor.h"

#include "content/SimulatedCameraFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

std::shared_ptr<ObjectInfoData> object(const char* name, std::uint64_t size = 0,
                                       const QDateTime& date = {})
{
    auto made = std::make_shared<ObjectInfoData>();
    // As decoded, with its terminator.
    made->setFileName(QString::fromUtf8(name) + QChar(u'\0'));
    made->setObjectCompressedSize(size);
    made->setModifiedDate(date);
    return made;
}

QDateTime day(int number)
{
    return {QDate(2026, 1, number), QTime(12, 0)};
}

TEST(SortDescriptor, NamesSortAsPeopleSortThem)
{
    ObjectList objects{object("img10.jpg"), object("IMG9.JPG"), object("B"), object("a")};
    sortObjects(objects, {{SortKey::FileName, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("a", "B", "IMG9.JPG", "img10.jpg"));
    sortObjects(objects, {{SortKey::FileName, false}});
    EXPECT_THAT(namesOf(objects), ElementsAre("img10.jpg", "IMG9.JPG", "B", "a"));
}

TEST(SortDescriptor, ANameThatBeginsAnotherStandsBeforeIt)
{
    ObjectList objects{object("IMG_1.JPG"), object("IMG_1"), object("IMG")};
    sortObjects(objects, {{SortKey::FileName, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("IMG", "IMG_1", "IMG_1.JPG"));
}

TEST(SortDescriptor, SizesSortByTheirNumber)
{
    ObjectList objects{object("b", 5'000'000'000), object("a", 0xFFFFFFFF), object("c", 9)};
    sortObjects(objects, {{SortKey::ObjectCompressedSize, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("c", "a", "b"));
}

TEST(SortDescriptor, NoDateStandsBeforeEveryDate)
{
    ObjectList objects{object("2", 0, day(2)), object("none"), object("1", 0, day(1))};
    sortObjects(objects, {{SortKey::ModifiedDate, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("none", "1", "2"));
    sortObjects(objects, {{SortKey::ModifiedDate, false}});
    EXPECT_THAT(namesOf(objects), ElementsAre("2", "1", "none"));
}

TEST(SortDescriptor, WhatIsTheSameKeepsItsOrder)
{
    ObjectList objects{object("z", 1), object("a", 2), object("y", 1), object("b", 2)};
    sortObjects(objects, {{SortKey::ObjectCompressedSize, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("z", "y", "a", "b"));
    sortObjects(objects, {{SortKey::ObjectCompressedSize, false}, {SortKey::FileName, true}});
    EXPECT_THAT(namesOf(objects), ElementsAre("a", "b", "y", "z"));
}

TEST(SortDescriptor, WithoutADescriptorNothingMoves)
{
    ObjectList objects{object("b"), object("a")};
    sortObjects(objects, {});
    EXPECT_THAT(namesOf(objects), ElementsAre("b", "a"));
}

}  // namespace
