#include "app/ModalSession.h"

#include <QCoreApplication>

namespace nivor {

ModalSession::ModalSession(QWidget& window)
    : window_(&window)
{
    window.setWindowModality(Qt::ApplicationModal);
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
