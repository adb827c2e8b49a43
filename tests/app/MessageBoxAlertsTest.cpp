#include "app/MessageBoxAlerts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

using namespace nivor;

namespace {

const Alert question{.style = Alert::Style::Informational,
                     .messageText = QStringLiteral("<b>Really?</b>"),
                     .informativeText = QStringLiteral("For good."),
                     .detailedText = QStringLiteral("A.JPG: gone"),
                     .buttons = {QStringLiteral("Delete"), QStringLiteral("Cancel")}};

/// Shows the alert and lets `act` at its box.
int answered(const Alert& alert, std::function<void(QMessageBox&)> act)
{
    QTimer::singleShot(0, qApp, [act = std::move(act)] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        act(*box);
    });
    return MessageBoxAlerts().runModal(alert);
}

QAbstractButton* button(const QMessageBox& box, const char* title)
{
    for (QAbstractButton* candidate : box.buttons()) {
        if (candidate->text() == QString::fromUtf8(title))
            return candidate;
    }
    return nullptr;
}

void pressEsc(QMessageBox& box)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&box, &press);
}

TEST(MessageBoxAlerts, AnswersWithTheIndexOfTheButton)
{
    EXPECT_EQ(answered(question, [](QMessageBox& box) { button(box, "Delete")->click(); }), 0);
    EXPECT_EQ(answered(question, [](QMessageBox& box) { button(box, "Cancel")->click(); }), 1);
}

TEST(MessageBoxAlerts, EscIsTheLastButton)
{
    EXPECT_EQ(answered(question, &pressEsc), 1);
}

TEST(MessageBoxAlerts, ShowsTextsAsTheyAre)
{
    answered(question, [](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), QStringLiteral("<b>Really?</b>"));
        EXPECT_EQ(box.informativeText(), QStringLiteral("For good."));
        EXPECT_EQ(box.detailedText(), QStringLiteral("A.JPG: gone"));
        EXPECT_EQ(box.defaultButton(), button(box, "Delete"));
        box.reject();
    });
}

TEST(MessageBoxAlerts, ASingleButtonIsReturnAndEsc)
{
    const Alert warning{.style = Alert::Style::Warning,
                        .messageText = QStringLiteral("No camera"),
                        .buttons = {QStringLiteral("OK")}};
    EXPECT_EQ(answered(warning,
                       [](QMessageBox& box) {
                           EXPECT_EQ(box.icon(), QMessageBox::Warning);
                           EXPECT_EQ(box.defaultButton(), button(box, "OK"));
                           pressEsc(box);
                       }),
              0);
}

}  // namespace
