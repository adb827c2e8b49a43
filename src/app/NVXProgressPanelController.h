/// Controls the panel of one copy run and holds its counters.
#pragma once

#include "content/ByteCountFormatter.h"
#include "content/CopyProgress.h"
#include "content/TransferRate.h"

#include <QString>

#include <functional>
#include <memory>

class QLabel;
class QPushButton;

namespace nivor {

class CopyProgressPanel;

/// The counters may be read and advanced on any thread; everything that touches the window
/// belongs to the main thread, the destruction included.
class NVXProgressPanelController : public CopyProgress {
public:
    using Clock = std::function<TransferRate::TimePoint()>;

    /// `stopModal`: ends the modal session that the panel is shown in.
    explicit NVXProgressPanelController(std::function<void()> stopModal,
                                        Clock clock = &std::chrono::steady_clock::now);
    ~NVXProgressPanelController() override;

    /// The panel, made when it is first asked for.
    CopyProgressPanel& window();

    /// The stop button's action: it can be pressed only once.
    void stopCopying();

    /// Brings the panel up to date.
    void updateUIComponents();

    /// Such as "Copying 3 / 10 to Pictures"; a single file has no ordinal.
    [[nodiscard]] QString formattedMessageText() const;

    /// How many bytes of how many.
    [[nodiscard]] QString formattedAmountText() const;

    /// How fast, and how long the rest will take; empty until that is known.
    [[nodiscard]] QString formattedRateText() const;

    /// How far the run is, in thousandths of its bytes.
    [[nodiscard]] int permille() const;

    /// Never true: a stop is told to the modal session instead.
    [[nodiscard]] bool isCanceled() const { return isCanceled_; }
    void setIsCanceled(bool isCanceled) { isCanceled_ = isCanceled; }

private:
    void windowDidLoad();

    const std::function<void()> stopModal_;
    const Clock clock_;
    const ByteCountFormatter byteCountFormatter_;
    std::atomic<bool> isCanceled_{false};

    TransferRate rate_;
    bool isStopping_ = false;
    std::unique_ptr<CopyProgressPanel> window_;
};

}  // namespace nivor
