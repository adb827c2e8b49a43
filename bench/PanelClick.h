/// A click on the stop button of the copy's panel, at a moment that the program can't foresee.
#pragma once

#include <QTimer>

#include <chrono>
#include <thread>

class QWidget;

namespace nivor::bench {

/// Waits for the panel, and then for so long. The mouse's events come from another thread, as they
/// do from a screen: in the middle of whatever the program is at.
class PanelClick {
public:
    using Clock = std::chrono::steady_clock;

    explicit PanelClick(std::chrono::microseconds delay);

    /// When the button was clicked; only when the panel is gone.
    [[nodiscard]] Clock::time_point moment();

private:
    void lookForPanel();
    void click(QWidget& button);

    const std::chrono::microseconds delay_;
    QTimer timer_;
    Clock::time_point moment_{};
    std::jthread mouse_;
};

}  // namespace nivor::bench
