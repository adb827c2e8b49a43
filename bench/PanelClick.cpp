#include "PanelClick.h"

#include "app/CopyProgressPanel.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>

namespace nivor::bench {

PanelClick::PanelClick(std::chrono::microseconds delay)
    : delay_(delay)
{
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { lookForPanel(); });
    timer_.start(std::chrono::milliseconds(1));
}

PanelClick::Clock::time_point PanelClick::moment()
{
    if (mouse_.joinable())
        mouse_.join();
    return moment_;
}

void PanelClick::lookForPanel()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* panel = dynamic_cast<CopyProgressPanel*>(widget);
        if (panel == nullptr || !panel->isVisible())
            continue;
        timer_.stop();
        click(panel->stopButton());
        return;
    }
}

void PanelClick::click(QWidget& button)
{
    const QPointF place = button.rect().center();
    const QPointF onScreen = button.mapToGlobal(place);
    const auto event = [=](QEvent::Type type, Qt::MouseButtons pressed) {
        return new QMouseEvent(type, place, onScreen, Qt::LeftButton, pressed, Qt::NoModifier);
    };
    mouse_ = std::jthread([this, event, &button] {
        std::this_thread::sleep_for(delay_);
        // A button acts when it is let go.
        QCoreApplication::postEvent(&button, event(QEvent::MouseButtonPress, Qt::LeftButton));
        moment_ = Clock::now();
        QCoreApplication::postEvent(&button, event(QEvent::MouseButtonRelease, Qt::NoButton));
    });
}

}  // namespace nivor::bench
