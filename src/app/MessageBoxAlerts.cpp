#include "app/MessageBoxAlerts.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <vector>

namespace nivor {
namespace {

constexpr int leastWidth = 440;

}  // namespace

MessageBoxAlerts::MessageBoxAlerts(QWidget* parent)
    : parent_(parent)
{
}

int MessageBoxAlerts::runModal(const Alert& alert)
{
    QMessageBox box(parent_);
    box.setIcon(alert.style == Alert::Style::Warning ? QMessageBox::Warning
                                                     : QMessageBox::Information);
    // Names from a camera may stand in any of these: never markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(alert.messageText);
    box.setInformativeText(alert.informativeText);
    box.setDetailedText(alert.detailedText);
    std::vector<const QAbstractButton*> buttons;
    for (const QString& title : alert.buttons) {
        // The last of several is the way out, which is what Esc chooses.
        const bool isWayOut = &title == &alert.buttons.last();
        QPushButton* button =
            box.addButton(title, isWayOut ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
        buttons.push_back(button);
        if (isWayOut)
            box.setEscapeButton(button);
        if (&title == &alert.buttons.first())
            box.setDefaultButton(button);
    }
    // Otherwise a box is as narrow as its buttons, and long texts become columns.
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout()))
        grid->addItem(new QSpacerItem(leastWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
    box.exec();
    const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return clicked == buttons.end() ? -1 : static_cast<int>(clicked - buttons.begin());
}

}  // namespace nivor
