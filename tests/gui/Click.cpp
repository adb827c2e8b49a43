#include "gui/Click.h"

#include <QAbstractButton>
#include <QWindow>
#include <QtTest/qtestmouse.h>

namespace nivor {

void clickOn(QWidget& widget, const QPoint& place)
{
    const QWidget& top = *widget.window();
    if (QWindow* window = top.windowHandle())
        QTest::mouseClick(window, Qt::LeftButton, {}, widget.mapTo(&top, place));
}

bool press(QAbstractButton* button)
{
    if (button == nullptr || !button->isVisible() || !button->isEnabled())
        return false;
    clickOn(*button, button->rect().center());
    return true;
}

}  // namespace nivor
