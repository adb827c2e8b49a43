#include "content/ContentModel.h"

#include "content/SimulatedCameraFixture.h"

#include <thread>

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

ContentListing listingOf(std::initializer_list<int> handles)
{
    ContentListing listing;
    for (const int handle : handles) {
        auto object = std::make_shared<ObjectInfoData>();
        object->setMyHandle(QString::number(handle));
        object->setFileName(QStringLiteral("F%1").arg(handle));
        listing.handles.insert(object->myHandle(),
                               HandleBlock::fromNumber(static_cast<std::uint32_t>(handle)));
        listing.objects.push_back(std::move(object));
    }
    return listing;
}

TEST(ContentModel, IsNullUntilSomethingIsPublished)
{
    const ContentModel model;
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST(ContentModel, APublicationSetsBothAndTheFlag)
{
    ContentModel model;
    model.publish(model.beginLoad(), listingOf({1, 2}));
    EXPECT_THAT(namesOf(*model.dataModels()), ElementsAre("F1", "F2"));
    EXPECT_EQ(model.handlesDict()->value(QStringLiteral("2")).number(), 2U);
    EXPECT_TRUE(model.isUpdateView());
}

TEST(ContentModel, ClearingSetsBothToNullAndLeavesTheFlag)
{
    ContentModel model;
    model.publish(model.beginLoad(), listingOf({1}));
    model.clear();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_EQ(model.handlesDict(), nullptr);
    EXPECT_TRUE(model.isUpdateView());
    model.remove(QStringLiteral("1"));
    EXPECT_EQ(model.dataModels(), nullptr);
}

TEST(ContentModel, AnEarlierLoadPublishesNothing)
{
    ContentModel model;
    const auto earlier = model.beginLoad();
    const auto later = model.beginLoad();
    EXPECT_FALSE(model.isCurrent(earlier));
    EXPECT_TRUE(model.isCurrent(later));
    model.publish(earlier, listingOf({1}));
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST(ContentModel, WhatWasRemovedStaysOutUntilTheNextLoad)
{
    ContentModel model;
    const auto load = model.beginLoad();
    model.publish(load, listingOf({1, 2}));
    model.remove(QStringLiteral("1"));
    EXPECT_THAT(namesOf(*model.dataModels()), ElementsAre("F2"));
    EXPECT_EQ(model.handlesDict()->size(), 1);
    model.publish(load, listingOf({1, 2, 3}));
    EXPECT_THAT(namesOf(*model.dataModels()), ElementsAre("F2", "F3"));
    EXPECT_EQ(model.handlesDict()->size(), 2);
    model.publish(model.beginLoad(), listingOf({1}));
    EXPECT_THAT(namesOf(*model.dataModels()), ElementsAre("F1"));
}

TEST(ContentModel, ANewLoadBeginsWithNothing)
{
    ContentModel model;
    model.publish(model.beginLoad(), listingOf({1}));
    model.beginLoad();
    EXPECT_EQ(model.dataModels(), nullptr);
    EXPECT_FALSE(model.isUpdateView());
}

TEST(ContentModel, OneThreadPublishesWhileAnotherReads)
{
    ContentModel model;
    const auto load = model.beginLoad();
    std::thread publisher([&] {
        for (int i = 0; i < 200; ++i) {
            model.publish(load, listingOf({1, 2, 3}));
            model.setIsUpdateView(false);
        }
    });
    for (int i = 0; i < 200; ++i) {
        const auto objects = model.dataModels();
        EXPECT_TRUE(!objects || objects->size() <= 3);
        model.remove(QStringLiteral("2"));
    }
    publisher.join();
    EXPECT_THAT(namesOf(*model.dataModels()), ElementsAre("F1", "F3"));
}

}  // namespace
