// Sorting, sizes, menus and dragging in the real window.

#include "app/IconSet.h"
#include "app/MainWindowFixture.h"
#include "app/ThumbnailSlider.h"

#include <QBuffer>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QStatusBar>
#include <QToolButton>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

class MainWindowUse : public MainWindowFixture { };

// --- The order, the slider ----------------------------------------------------------------------

TEST_F(MainWindowUse, AClickOnAHeaderSortsAndAnotherTurnsTheOrder)
{
    listSmallCard();
    QHeaderView& header = *real.outlineView().header();
    const QPoint size(header.sectionViewportPosition(2) + 20, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, size);
    const bool wasAscending = header.sortIndicatorOrder() == Qt::AscendingOrder;
    EXPECT_EQ(header.sortIndicatorSection(), 2);
    EXPECT_EQ(controller.sortDescriptors().front().key, SortKey::ObjectCompressedSize);
    const auto first = rows();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, size);
    EXPECT_NE(header.sortIndicatorOrder() == Qt::AscendingOrder, wasAscending);
    EXPECT_NE(rows(), first);
}

TEST_F(MainWindowUse, TheMenuSortsAsTheHeaderDoes)
{
    listSmallCard();
    EXPECT_TRUE(real.actions().sortBy.at(0)->isChecked());
    real.actions().sortBy.at(2)->trigger();
    EXPECT_THAT(rows(), ElementsAre("DCIM", "README", "A.JPG", "B.MOV", "TOP.JPG"));
    real.actions().sortDescending->trigger();
    EXPECT_THAT(rows(), ElementsAre("TOP.JPG", "DCIM", "B.MOV", "A.JPG", "README"));
    EXPECT_EQ(real.outlineView().header()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(MainWindowUse, TheSliderMakesFilesHigherAndLeavesFolders)
{
    listSmallCard();
    const int least = heightOf("DCIM");
    EXPECT_EQ(heightOf("A.JPG"), least);
    real.thumbnailExpandSlider().setValue(real.thumbnailExpandSlider().maximum());
    EXPECT_EQ(heightOf("DCIM"), least);
    EXPECT_NEAR(heightOf("A.JPG"), least * 50.0 / 17.0, 1.0);
}

TEST_F(MainWindowUse, ThumbnailsFillATwoToOneFrameAndMissingOnesAreStoodInFor)
{
    QImage red(160, 80, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray file;
    QBuffer buffer(&file);
    red.save(&buffer, "PNG");
    const std::uint32_t dcim = card->addFolder(u"DCIM");
    card->setThumbnail(card->addFile(u"A.JPG", 10, dcim), ByteBuffer(file.begin(), file.end()));
    card->addFile(u"B.JPG", 10, dcim);
    plugIn();
    listCamera();
    real.setSliderValue(50);
    real.layOutRows();
    const double pixels = heightOf("DCIM") / 17.0;
    const auto frame = [&](const char* name) {
        const QPoint origin = real.outlineView().visualRect(index(name)).topLeft();
        return QRect(origin, (QSizeF(67, 33.5) * pixels).toSize());
    };

    QImage shown;
    const auto isRedAt = [&shown](const QPoint& at) {
        const QColor colour = shown.pixelColor(at);
        return colour.red() > 200 && colour.green() < 60 && colour.blue() < 60;
    };
    const auto end = std::chrono::steady_clock::now() + 10s;
    do {
        shown = real.outlineView().viewport()->grab().toImage();
        mainQueue.advance(20ms);
    } while (!isRedAt(frame("A.JPG").center()) && std::chrono::steady_clock::now() < end);
    const QRect red67By33 = frame("A.JPG");
    EXPECT_TRUE(isRedAt(red67By33.topLeft() + QPoint(3, 3)));
    EXPECT_TRUE(isRedAt(red67By33.bottomRight() - QPoint(3, 3)));
    EXPECT_FALSE(isRedAt(QPoint(red67By33.right() + 3, red67By33.center().y())));

    // The same as that picture alone, on the same ground.
    const QRect empty = frame("B.JPG");
    QImage expected = shown.copy(empty);
    expected.fill(shown.pixelColor(empty.right() + 30 + 60, empty.center().y()));
    QPainter painter(&expected);
    plainIcon(english("no-thumbnail"))
        .paint(&painter,
               QRectF(QPointF(), QSizeF(67, 33.5) * pixels).adjusted(1, 1, -1, -1).toAlignedRect());
    painter.end();
    EXPECT_EQ(shown.pixelColor(empty.center()),
              expected.pixelColor(empty.center() - empty.topLeft()));
    EXPECT_NE(shown.pixelColor(empty.center()), expected.pixelColor(0, 0));
}

TEST_F(MainWindowUse, KeysAndMenuChangeTheSizeOfThumbnails)
{
    listSmallCard();
    real.actions().largerThumbnails->trigger();
    EXPECT_DOUBLE_EQ(real.sliderValue(), 10.0);
    real.actions().smallerThumbnails->trigger();
    real.actions().smallerThumbnails->trigger();
    EXPECT_DOUBLE_EQ(real.sliderValue(), 0.0);
}

// --- Menus and dragging -------------------------------------------------------------------------

TEST_F(MainWindowUse, ARightClickNamesItsRowAndLeavesTheSelection)
{
    listSmallCard();
    click("A.JPG");
    int clicked = -1;
    QTimer::singleShot(0, &real, [&] {
        clicked = real.clickedRow();
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        EXPECT_THAT(menu->actions(),
                    ElementsAre(real.actions().copyToFolder, real.actions().deleteFiles));
        menu->close();
    });
    const QPoint at = centerOf("B.MOV");
    QWidget* viewport = real.outlineView().viewport();
    QTest::mouseClick(viewport, Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QCoreApplication::sendEvent(viewport, &event);
    EXPECT_EQ(clicked, 2);
    EXPECT_EQ(real.clickedRow(), -1);
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(1));
}

TEST_F(MainWindowUse, AReloadUnderTheContextMenuLeavesItsRow)
{
    listSmallCard();
    click("A.JPG");
    int clicked = -1;
    QTimer::singleShot(0, &real, [&] {
        controller.sortDescriptorsDidChange({{SortKey::FileName, false}});
        clicked = real.clickedRow();
        QApplication::activePopupWidget()->close();
    });
    openMenuOn("TOP.JPG");
    EXPECT_EQ(clicked, 0);
}

TEST_F(MainWindowUse, TheContextMenuGoesWithItsRow)
{
    listSmallCard();
    click("A.JPG");
    bool isOpen = true;
    QTimer::singleShot(0, &real, [&] {
        host->detach(camera);
        mainQueue.advance(1s);
        controller.checkNIVORConnectionTimerFire();
        isOpen = QApplication::activePopupWidget() != nullptr;
    });
    openMenuOn("TOP.JPG");
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(chooser.questions, 0);
}

TEST_F(MainWindowUse, TheTrashButtonFollowsTheKeyboard)
{
    listSmallCard();
    click("DCIM");
    EXPECT_FALSE(real.trashButton().isEnabled());
    QTest::keyClick(&real.outlineView(), Qt::Key_Down, Qt::ShiftModifier);
    QCoreApplication::processEvents();
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(0, 1));
    EXPECT_TRUE(real.trashButton().isEnabled());
}

TEST_F(MainWindowUse, AfterADeletionTheTrashButtonHasNothingToDelete)
{
    listSmallCard();
    click("A.JPG");
    real.trashButton().click();
    mainQueue.advance({});
    QCoreApplication::processEvents();
    EXPECT_EQ(real.numberOfSelectedRows(), 0);
    EXPECT_FALSE(real.trashButton().isEnabled());
}

TEST_F(MainWindowUse, OnlyAMotionToTheSideDrags)
{
    listSmallCard();
    int drags = 0;
    real.outlineView().setActions({.wasClicked = [] {},
                                   .selectionChanged = [] {},
                                   .wasReloaded = [] {},
                                   .dragWanted = [&drags] { ++drags; },
                                   .contextMenuWanted = [](const QPoint&) {}});
    dragMouse(centerOf("A.JPG"), {60, 3});
    EXPECT_EQ(drags, 1);
    QTest::mouseRelease(real.outlineView().viewport(), Qt::LeftButton);

    const QPoint down = centerOf("README") - centerOf("A.JPG");
    dragMouse(centerOf("A.JPG"), down);
    QTest::mouseRelease(real.outlineView().viewport(), Qt::LeftButton, {}, centerOf("README"));
    EXPECT_EQ(drags, 1);
    EXPECT_THAT(real.selectedRowIndexes(), ElementsAre(1, 2, 3));
}

TEST_F(MainWindowUse, WhereNothingCanBeDraggedOutTheWindowSaysSo)
{
    listSmallCard();
    dragMouse(centerOf("A.JPG"), {60, 3});
    EXPECT_TRUE(
        real.findChild<QStatusBar*>()->currentMessage().contains(english("can’t be dragged out")));
}

TEST_F(MainWindowUse, DraggingWhatHasNoExtensionSaysNothing)
{
    listSmallCard();
    dragMouse(centerOf("README"), {60, 3});
    EXPECT_TRUE(real.findChild<QStatusBar*>()->currentMessage().isEmpty());
}

TEST_F(MainWindowUse, EveryControlHasANameAndCanBeReachedWithTheKeyboard)
{
    for (QWidget* control : std::initializer_list<QWidget*>{
             &real.selectAllButton(), &real.copyButton(), &real.trashButton(),
             &real.thumbnailExpandSlider(), &real.outlineView()}) {
        EXPECT_FALSE(control->accessibleName().isEmpty());
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus)
            << control->accessibleName().toStdString();
    }
    EXPECT_EQ(real.actions().deleteFiles->shortcut(), QKeySequence(Qt::Key_Delete));
    for (const QAction* action : real.actions().copyToFolder->parent()->findChildren<QAction*>())
        EXPECT_NE(action->shortcut(), QKeySequence(QKeySequence::Copy));
}

TEST_F(MainWindowUse, TheDeleteKeyAsksAndDeletes)
{
    listSmallCard();
    click("A.JPG");
    real.actions().deleteFiles->trigger();
    EXPECT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(rows(), ElementsAre("DCIM", "B.MOV", "README", "TOP.JPG"));
}

}  // namespace
