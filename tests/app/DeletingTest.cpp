#include "app/AppFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class AppDeleting : public AppFixture {
protected:
    static FaultPlan refuseDeletion(std::uint64_t which)
    {
        return FaultPlan().on(OperationCode::DeleteObject,
                              fault::Refuse{ResponseCode::ObjectWriteProtected},
                              Occurrences::nth(which));
    }

    std::vector<std::string> listed() const { return namesOf(*app.dataModels()); }
};

TEST_F(AppDeleting, TheQuestionHasItsTextsAndButtons)
{
    alerts.answer = 1;
    EXPECT_FALSE(app.showCofirmDeleteAlert());
    alerts.answer = -1;
    EXPECT_FALSE(app.showCofirmDeleteAlert());
    alerts.answer = 0;
    EXPECT_TRUE(app.showCofirmDeleteAlert());
    const Alert& alert = alerts.shown.front();
    EXPECT_EQ(alert.style, Alert::Style::Informational);
    EXPECT_EQ(alert.messageText, english("Delete the selected files from the camera?"));
    EXPECT_THAT(alert.informativeText.toStdString(), HasSubstr("can’t be undone"));
    EXPECT_EQ(alert.buttons, QStringList({english("Delete"), english("Cancel")}));
}

TEST_F(AppDeleting, ThreeFilesGoAndTheFolderStays)
{
    card->addFolder(u"DCIM");
    addFiles({u"A", u"B", u"C"});
    list();
    selectAll();
    app.startDeletingSelectedItems();
    EXPECT_EQ(requests(OperationCode::DeleteObject), 3U);
    EXPECT_THAT(listed(), ElementsAre("DCIM"));
    EXPECT_EQ(app.handlesDict()->size(), 1);
    EXPECT_THAT(window.take(), ElementsAre("reload"));
    EXPECT_THAT(namesOf(window.shown), ElementsAre("DCIM"));
    EXPECT_THAT(log.messagesOf(deleteRecord),
                ElementsAre("startDeletingItems (deleteItemCount = 3)",
                            "startDeletingItem (result = success)"));
    EXPECT_EQ(alerts.shown.size(), 1U);  // the question
}

TEST_F(AppDeleting, CancellingSendsNothingAndLogsNothing)
{
    addFiles({u"A"});
    list();
    selectAll();
    alerts.answer = 1;
    app.startDeletingSelectedItems();
    EXPECT_EQ(requests(OperationCode::DeleteObject), 0U);
    EXPECT_THAT(log.messagesOf(deleteRecord), IsEmpty());
    EXPECT_THAT(window.take(), IsEmpty());
}

TEST_F(AppDeleting, ARefusalOfTheSecondOfThreeLeavesThatFileAndIsNotTold)
{
    addFiles({u"A", u"B", u"C"});
    list({.faults = refuseDeletion(2)});
    selectAll();
    app.startDeletingSelectedItems();
    EXPECT_THAT(listed(), ElementsAre("B"));
    EXPECT_EQ(log.messagesOf(deleteRecord).back(), "startDeletingItem (result = success)");
    EXPECT_EQ(alerts.shown.size(), 1U);
    EXPECT_FALSE(app.isError());
    EXPECT_EQ(window.message, "2 of 3 files deleted");
}

TEST_F(AppDeleting, ARefusalOfTheLastFileIsTold)
{
    addFiles({u"A", u"B"});
    list({.faults = refuseDeletion(2)});
    selectAll();
    app.startDeletingSelectedItems();
    EXPECT_THAT(listed(), ElementsAre("B"));
    EXPECT_EQ(log.messagesOf(deleteRecord).back(), "startDeletingItem (result = fail)");
    ASSERT_EQ(alerts.shown.size(), 2U);
    EXPECT_EQ(alerts.shown.back().messageText, english("Some files could not be processed."));
    EXPECT_THAT(alerts.shown.back().detailedText.toStdString(), HasSubstr("B: "));
    EXPECT_THAT(window.take(), ElementsAre("reload"));
    EXPECT_TRUE(app.isError());
}

TEST_F(AppDeleting, ARightClickOnAnUnselectedRowDeletesTheSelection)
{
    addFiles({u"A", u"B"});
    list();
    selectRows({0});
    window.clicked = 1;
    app.startDeletingSelectedItems();
    EXPECT_THAT(listed(), ElementsAre("B"));
}

TEST_F(AppDeleting, OnlyFoldersSelectedMeansNothingIsSentAndTheListReloads)
{
    card->addFolder(u"DCIM");
    list();
    selectAll();
    app.startDeletingSelectedItems();
    EXPECT_EQ(requests(OperationCode::DeleteObject), 0U);
    EXPECT_THAT(log.messagesOf(deleteRecord),
                ElementsAre("startDeletingItems (deleteItemCount = 0)",
                            "startDeletingItem (result = success)"));
    EXPECT_THAT(window.take(), ElementsAre("reload"));
}

TEST_F(AppDeleting, OnlyASelectedFileIsATarget)
{
    card->addFolder(u"DCIM");
    addFiles({u"A"});
    list();
    EXPECT_FALSE(app.isContainsTargetItemInSelectedItems());
    window.clicked = 1;
    EXPECT_FALSE(app.isContainsTargetItemInSelectedItems());
    selectRows({0});
    EXPECT_FALSE(app.isContainsTargetItemInSelectedItems());
    selectRows({0, 1});
    EXPECT_TRUE(app.isContainsTargetItemInSelectedItems());
}

TEST_F(AppDeleting, ACameraThatVanishesIsTold)
{
    addFiles({u"A", u"B", u"C"});
    list({.faults =
              FaultPlan().on(OperationCode::DeleteObject, fault::Vanish{}, Occurrences::nth(2))});
    selectAll();
    app.startDeletingSelectedItems();
    EXPECT_THAT(listed(), ElementsAre("B", "C"));
    ASSERT_EQ(alerts.shown.size(), 2U);
    EXPECT_TRUE(alerts.shown.back().detailedText.endsWith(english("C: the camera is gone")));
}

}  // namespace
