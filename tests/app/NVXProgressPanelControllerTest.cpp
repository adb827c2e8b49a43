#include "app/NVXProgressPanelController.h"

#include "app/CopyProgressPanel.h"
#include "app/ModalSession.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <gtest/gtest.h>

#include <thread>

using namespace nivor;
using namespace std::chrono_literals;

namespace {

class ProgressPanel : public ::testing::Test {
protected:
    ProgressPanel()
    {
        controller.setDestinationURL(QUrl::fromLocalFile(QStringLiteral("/home/me/Pictures")));
    }

    std::string message() { return controller.formattedMessageText().toStdString(); }
    std::string amount() { return controller.formattedAmountText().toStdString(); }
    std::string rate() { return controller.formattedRateText().toStdString(); }

    int stops = 0;
    TransferRate::TimePoint now{};
    NVXProgressPanelController controller{[this] { ++stops; }, [this] { return now; }};
};

TEST_F(ProgressPanel, BeginsWithNothing)
{
    EXPECT_EQ(controller.numberOfCopiedItems(), 0U);
    EXPECT_EQ(controller.numberOfTotalItems(), 0U);
    EXPECT_EQ(controller.copiedSize(), 0U);
    EXPECT_EQ(controller.totalSize(), 0U);
    EXPECT_FALSE(controller.isCanceled());
    EXPECT_EQ(controller.permille(), 0);
}

TEST_F(ProgressPanel, NoItemAndOneItemHaveNoOrdinal)
{
    EXPECT_EQ(message(), "Copying 0 to “Pictures”");
    controller.setNumberOfTotalItems(1);
    controller.setNumberOfCopiedItems(1);
    EXPECT_EQ(message(), "Copying 1 to “Pictures”");
}

TEST_F(ProgressPanel, TwoItemsAreCountedOff)
{
    controller.setNumberOfTotalItems(2);
    controller.setNumberOfCopiedItems(1);
    EXPECT_EQ(message(), "Copying 1 / 2 to “Pictures”");
    controller.setNumberOfCopiedItems(2);
    EXPECT_EQ(message(), "Copying 2 / 2 to “Pictures”");
}

TEST_F(ProgressPanel, TheTopOfTheDiskHasAName)
{
    controller.setDestinationURL(QUrl::fromLocalFile(QStringLiteral("/")));
    EXPECT_EQ(message(), "Copying 0 to “/”");
    controller.setDestinationURL(QUrl::fromLocalFile(QStringLiteral("/tmp/with slash/")));
    EXPECT_EQ(message(), "Copying 0 to “with slash”");
}

TEST_F(ProgressPanel, BytesAreMegabytesOrGigabytes)
{
    controller.setCopiedSize(6'000);
    controller.setTotalSize(18'400'000);
    EXPECT_EQ(amount(), "0.006 MB of 18.4 MB");
    controller.setCopiedSize(1'500'000'000);
    controller.setTotalSize(5'368'709'120);
    EXPECT_EQ(amount(), "1.5 GB of 5.37 GB");
}

TEST_F(ProgressPanel, ShowsItsLinesAndItsBar)
{
    controller.setSourceFile(QStringLiteral("<i>IMG.JPG"));
    controller.setNumberOfTotalItems(3);
    controller.setNumberOfCopiedItems(1);
    controller.setTotalSize(10'000'000);
    controller.setCopiedSize(2'500'000);
    controller.updateUIComponents();
    const CopyProgressPanel& panel = controller.window();
    EXPECT_EQ(panel.messageField().text(), controller.formattedMessageText());
    EXPECT_EQ(panel.sourceFileField().text(), QStringLiteral("<i>IMG.JPG"));
    EXPECT_EQ(panel.sourceFileField().textFormat(), Qt::PlainText);
    EXPECT_EQ(panel.amountField().text(), controller.formattedAmountText());
    EXPECT_EQ(panel.progressBar().value(), 250);
}

TEST_F(ProgressPanel, TheFirstLineIsBoldInTheUsualSize)
{
    const CopyProgressPanel& panel = controller.window();
    EXPECT_TRUE(panel.messageField().font().bold());
    EXPECT_FALSE(panel.sourceFileField().font().bold());
    EXPECT_EQ(panel.messageField().font().pointSizeF(), panel.font().pointSizeF());
}

TEST_F(ProgressPanel, TheBarEndsAtItsEndThoughHeadersAreCounted)
{
    controller.setTotalSize(100);
    controller.setCopiedSize(112);
    EXPECT_EQ(controller.permille(), 1000);
    controller.updateUIComponents();
    EXPECT_EQ(rate(), "");
}

TEST_F(ProgressPanel, RateAndTimeLeftComeWhenTheyAreKnown)
{
    controller.setTotalSize(100'000'000);
    for (int i = 0; i <= 20; ++i) {
        controller.setCopiedSize(static_cast<std::uint64_t>(i) * 1'000'000);
        controller.updateUIComponents();
        EXPECT_EQ(rate().empty(), i < 6) << i;
        now += 100ms;
    }
    EXPECT_EQ(rate(), "10 MB/s, 0:08 left");
    EXPECT_EQ(controller.window().rateField().text().toStdString(), "10 MB/s, 0:08 left");
}

TEST_F(ProgressPanel, StopCanBePressedOnce)
{
    QPushButton& button = controller.window().stopButton();
    EXPECT_TRUE(button.isEnabled());
    button.click();
    EXPECT_FALSE(button.isEnabled());
    EXPECT_EQ(stops, 1);
    button.click();
    controller.window().reject();
    EXPECT_EQ(stops, 1);
    EXPECT_EQ(rate(), "Stopping…");
    EXPECT_FALSE(controller.isCanceled());
}

TEST_F(ProgressPanel, EscAndClosingPressTheStopButton)
{
    CopyProgressPanel& panel = controller.window();
    panel.show();
    EXPECT_FALSE(panel.close());
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(stops, 1);
    panel.reject();
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(ProgressPanel, TheButtonHasTheKeyboardAndTheControlsHaveNames)
{
    CopyProgressPanel& panel = controller.window();
    EXPECT_EQ(panel.focusWidget(), &panel.stopButton());
    EXPECT_TRUE(panel.stopButton().isDefault());
    EXPECT_EQ(panel.stopButton().text(), QStringLiteral("Stop"));
    EXPECT_FALSE(panel.progressBar().accessibleName().isEmpty());
    EXPECT_FALSE(panel.stopButton().accessibleDescription().isEmpty());
}

TEST_F(ProgressPanel, ALongNameDoesNotWidenThePanel)
{
    CopyProgressPanel& panel = controller.window();
    const int width = panel.width();
    controller.setSourceFile(QString(1000, u'W'));
    controller.updateUIComponents();
    panel.show();
    EXPECT_EQ(panel.width(), width);
    EXPECT_LE(panel.sourceFileField().width(), width);
}

TEST_F(ProgressPanel, AnotherThreadAdvancesTheBytes)
{
    controller.setTotalSize(1'000);
    std::thread transfer([this] {
        for (std::uint64_t i = 1; i <= 1'000; ++i)
            controller.setCopiedSize(i);
    });
    while (controller.copiedSize() < 1'000)
        controller.updateUIComponents();
    transfer.join();
    controller.updateUIComponents();
    EXPECT_EQ(controller.window().progressBar().value(), 1000);
}

TEST_F(ProgressPanel, ASessionGoesOnUntilItIsStopped)
{
    CopyProgressPanel& panel = controller.window();
    {
        ModalSession session(panel);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_EQ(panel.windowModality(), Qt::ApplicationModal);
        EXPECT_EQ(session.run(), ModalSession::Response::Continue);
        session.stopModal();
        EXPECT_EQ(session.run(), ModalSession::Response::Stop);
        EXPECT_EQ(static_cast<int>(ModalSession::Response::Continue), -1002);
        EXPECT_TRUE(panel.isVisible());
    }
    EXPECT_FALSE(panel.isVisible());
}

}  // namespace
