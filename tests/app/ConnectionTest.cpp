#include "app/AppFixture.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class AppConnection : public AppFixture { };

TEST_F(AppConnection, ACameraIsFollowedInAndOut)
{
    addFiles({u"A", u"B"});
    plugIn();
    tick();
    EXPECT_TRUE(app.NIVORConnected());
    EXPECT_EQ(app.dataModels(), nullptr);
    mainQueue.advance(1s);
    app.operationQueue().waitUntilAllOperationsAreFinished();
    app.checkNIVORConnectionTimerFire();
    EXPECT_THAT(window.take(), ElementsAre("reload", "expand", "select all on", "trash off"));
    EXPECT_THAT(namesOf(window.shown), ElementsAre("A"));
    mainQueue.advance(2s);
    EXPECT_TRUE(app.isUpdateView());
    app.checkNIVORConnectionTimerFire();
    EXPECT_FALSE(app.isUpdateView());
    EXPECT_THAT(namesOf(window.shown), ElementsAre("A", "B"));
    EXPECT_EQ(app.handlesDict()->size(), 2);
    window.take();

    host->detach(camera);
    tick();
    EXPECT_FALSE(app.NIVORConnected());
    EXPECT_THAT(window.take(), ElementsAre("reload", "select all off", "trash off"));
    EXPECT_THAT(window.shown, IsEmpty());
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(AppConnection, TheListComesInTheOrderOfTheDescriptors)
{
    addFiles({u"B", u"A"});
    app.setSortDescriptors({{SortKey::FileName, true}});
    list();
    EXPECT_THAT(namesOf(window.shown), ElementsAre("A", "B"));
}

TEST_F(AppConnection, ClosingEndsTheListingAndPublishesNothing)
{
    addFiles({u"A", u"B", u"C"});
    plugIn();
    tick();
    card->closeAfter(1);
    mainQueue.advance(1s);
    card->waitUntilReached();
    app.setIsClosed(true);
    EXPECT_TRUE(app.windowShouldClose());
    card->open();
    app.operationQueue().waitUntilAllOperationsAreFinished();
    EXPECT_EQ(requests(OperationCode::GetObjectInfo), 2U);
    mainQueue.advance(5s);
    EXPECT_THAT(namesOf(*app.dataModels()), ElementsAre("A"));
}

TEST_F(AppConnection, TheAlertAsksForACamera)
{
    app.showNotConnectedAlert();
    ASSERT_EQ(alerts.shown.size(), 1U);
    const Alert& alert = alerts.shown.front();
    EXPECT_EQ(alert.style, Alert::Style::Warning);
    EXPECT_EQ(alert.messageText, english("No camera is connected."));
    EXPECT_TRUE(alert.informativeText.startsWith(english("Connect the camera")));
    EXPECT_EQ(alert.buttons, QStringList(english("OK")));
}

}  // namespace
