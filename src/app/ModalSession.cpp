#include "app/ModalSession.h"

#include <QCoreApplication>
#include <QWindow>

namespace nivor {

ModalSession::ModalSession(QWidget& window, QWidget* over)
    : window_(&window)
{
    window.setWindowModality(Qt::ApplicationModal);
    if (over != nullptr && over->windowHandle() != nullptr) {
        window.winId();  // makes the handle
        window.windowHandle()->setTransientParent(over->windowHandle());
        QRect place(QPoint(), window.size());
        place.moveCenter(over->geometry().center());
        window.move(place.topLeft());
    }
    window.show();
    window.activateWindow();
}

ModalSession::~ModalSession()
{
    if (window_)
        window_->hide();
}

ModalSession::Response ModalSession::run()
{
    QCoreApplication::processEvents();
    return isStopped_ ? Response::Stop : Response::Continue;
}

}  // namespace nivor
