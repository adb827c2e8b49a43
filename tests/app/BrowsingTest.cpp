#include "app/AppFixture.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class AppBrowsing : public AppFixture {
protected:
    ObjectList itemsNamed(std::initializer_list<const char*> names) const
    {
        ObjectList items;
        for (const char* name : names) {
            for (const auto& object : window.shown) {
                if (namesOf({object}).front() == name)
                    items.push_back(object);
            }
        }
        return items;
    }
};

TEST_F(AppBrowsing, SortingReordersTheListAndReloads)
{
    addFiles({u"B", u"C", u"A"});
    list();
    app.sortDescriptorsDidChange({{SortKey::FileName, false}});
    EXPECT_THAT(window.take(), ElementsAre("reload"));
    EXPECT_THAT(namesOf(window.shown), ElementsAre("C", "B", "A"));
    EXPECT_THAT(namesOf(*app.dataModels()), ElementsAre("C", "B", "A"));
}

TEST_F(AppBrowsing, SortingWithoutACameraOnlyKeepsTheOrder)
{
    app.sortDescriptorsDidChange({{SortKey::ModifiedDate, true}});
    EXPECT_EQ(app.dataModels(), nullptr);
    EXPECT_THAT(app.sortDescriptors(), ElementsAre(SortDescriptor{SortKey::ModifiedDate, true}));
}

TEST_F(AppBrowsing, SelectAllSelectsAllAndThenNone)
{
    addFiles({u"A", u"B"});
    list();
    selectRows({1});
    app.selectAllButtonWasClicked();
    EXPECT_THAT(window.selected, ElementsAre(0, 1));
    EXPECT_THAT(window.take(), ElementsAre("trash on"));
    app.selectAllButtonWasClicked();
    EXPECT_THAT(window.selected, IsEmpty());
    EXPECT_THAT(window.take(), ElementsAre("trash off"));
}

TEST_F(AppBrowsing, SelectAllOfNothingDeselectsAndDisablesTheTrash)
{
    app.selectAllButtonWasClicked();
    EXPECT_THAT(window.selected, IsEmpty());
    EXPECT_THAT(window.take(), ElementsAre("trash off"));
}

TEST_F(AppBrowsing, SelectAllEnablesTheTrashThoughThereAreOnlyFolders)
{
    card->addFolder(u"DCIM");
    list();
    app.selectAllButtonWasClicked();
    EXPECT_THAT(window.take(), ElementsAre("trash on"));
}

TEST_F(AppBrowsing, AClickEnablesTheTrashWhenAFileIsSelected)
{
    card->addFolder(u"DCIM");
    addFiles({u"A"});
    list();
    app.outlineViewWasClicked();
    selectRows({0});
    app.outlineViewWasClicked();
    selectRows({0, 1});
    app.outlineViewWasClicked();
    EXPECT_THAT(window.take(), ElementsAre("trash off", "trash off", "trash on"));
}

TEST_F(AppBrowsing, TheTrashButtonDeletesTheSelectionAfterAsking)
{
    addFiles({u"A", u"B"});
    list();
    selectRows({0});
    app.trashButtonWasClicked();
    EXPECT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(namesOf(*app.dataModels()), ElementsAre("B"));
}

TEST_F(AppBrowsing, TheSliderLaysTheRowsOutAnew)
{
    app.thumbnailZoomSliderIsSlid();
    EXPECT_THAT(window.take(), ElementsAre("lay out"));
    EXPECT_FALSE(settings.contains(QLatin1String(AppDelegate::thumbnailExpandSliderKey)));
}

TEST_F(AppBrowsing, MenuItemsFollowTheSelection)
{
    using Action = AppDelegate::MenuAction;
    card->addFolder(u"DCIM");
    addFiles({u"A"});
    list();
    selectRows({0, 1});
    EXPECT_TRUE(app.validateMenuItem(Action::StartCopyingSelectedItems));
    EXPECT_TRUE(app.validateMenuItem(Action::StartDeletingSelectedItems));
    selectRows({0});
    EXPECT_FALSE(app.validateMenuItem(Action::StartCopyingSelectedItems));
    EXPECT_FALSE(app.validateMenuItem(Action::StartDeletingSelectedItems));
    EXPECT_TRUE(app.validateMenuItem(Action::Other));
    selectRows({});
    EXPECT_TRUE(app.validateMenuItem(Action::Other));
}

// --- Dragging out -------------------------------------------------------------------------------

TEST_F(AppBrowsing, ADragOffersTheFullNamesOfWhatHasAnExtension)
{
    card->addFolder(u"DCIM");
    addFiles({u"A.JPG", u"README", u"B.MOV", u".profile", u"dot."});
    list();
    EXPECT_EQ(AppDelegate::writeItems(window.shown),
              QStringList({english("A.JPG"), english("B.MOV")}));
}

TEST_F(AppBrowsing, ADragOfFoldersAndNamesWithoutExtensionIsRefused)
{
    card->addFolder(u"DCIM");
    addFiles({u"README"});
    list();
    EXPECT_THAT(AppDelegate::writeItems(window.shown), IsEmpty());
    EXPECT_THAT(AppDelegate::writeItems({}), IsEmpty());
}

TEST_F(AppBrowsing, ADropCopiesAMomentLaterAndLeavesFoldersOut)
{
    card->addFolder(u"DCIM");
    addFiles({u"A.JPG", u"README"});
    list();
    app.namesOfPromisedFilesDroppedAtDestination(urlOf(folder()), window.shown);
    mainQueue.advance(99ms);
    EXPECT_THAT(filesInFolder(), IsEmpty());
    mainQueue.advance(1ms);
    // The one without an extension was dragged along.
    EXPECT_THAT(filesInFolder(), ElementsAre("A.JPG", "README"));
    EXPECT_THAT(log.messagesOf(copyRecord).front(), "startCopyingItems (copyItemCount = 3)");
}

TEST_F(AppBrowsing, ADropWhoseCameraHasGoneByThenFailsClearly)
{
    addFiles({u"A.JPG"});
    list();
    app.namesOfPromisedFilesDroppedAtDestination(urlOf(folder()), window.shown);
    host->detach(camera);
    app.checkNIVORConnectionTimerFire();
    mainQueue.advance(100ms);
    EXPECT_THAT(filesInFolder(), IsEmpty());
    EXPECT_EQ(alerts.shown.size(), 1U);
}

TEST_F(AppBrowsing, ADropThatNamesNoFolderAsksForOne)
{
    addFiles({u"A.JPG", u"B.JPG"});
    list();
    app.promisedFilesDroppedNowhere(itemsNamed({"B.JPG"}));
    EXPECT_EQ(chooser.questions, 1);
    EXPECT_THAT(filesInFolder(), ElementsAre("B.JPG"));
    chooser.answer.reset();
    app.promisedFilesDroppedNowhere(itemsNamed({"A.JPG"}));
    EXPECT_THAT(filesInFolder(), ElementsAre("B.JPG"));
}

}  // namespace
