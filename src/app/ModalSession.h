/// A window that has the user's attention alone while the program goes on working.
#pragma once

#include <QPointer>
#include <QWidget>

namespace nivor {

/// Shows the window as application-modal for as long as the session lives. The program turns the
/// event loop itself, with `run`. On the main thread.
class ModalSession {
public:
    enum class Response { Continue = -1002, Stop = -1000 };

    /// `over`: the window that it opens over; may be absent.
    explicit ModalSession(QWidget& window, QWidget* over = nullptr);

    /// Orders the window out.
    ~ModalSession();

    ModalSession(const ModalSession&) = delete;
    ModalSession& operator=(const ModalSession&) = delete;

    /// Handles the events that wait; answers whether the session goes on.
    Response run();

    /// From the next `run` on the session is over. The window stays until the end.
    void stopModal() { isStopped_ = true; }

    [[nodiscard]] bool isStopped() const { return isStopped_; }

private:
    QPointer<QWidget> window_;
    bool isStopped_ = false;
};

}  // namespace nivor
