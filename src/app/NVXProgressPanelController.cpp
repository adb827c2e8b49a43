#include "app/NVXProgressPanelController.h"

#include "app/CopyProgressPanel.h"
#include "app/LocalizedText.h"
#include "content/ByteCount.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace nivor {
namespace {

constexpr int wholeBar = 1000;

/// A folder as file managers call it.
QString displayName(const QUrl& folder)
{
    const QString path = QDir(folder.toLocalFile()).absolutePath();
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

}  // namespace

NVXProgressPanelController::NVXProgressPanelController(std::function<void()> stopModal, Clock clock)
    : stopModal_(std::move(stopModal))
    , clock_(std::move(clock))
{
}

NVXProgressPanelController::~NVXProgressPanelController() = default;

CopyProgressPanel& NVXProgressPanelController::window()
{
    if (!window_) {
        window_ = std::make_unique<CopyProgressPanel>([this] { stopCopying(); });
        windowDidLoad();
    }
    return *window_;
}

void NVXProgressPanelController::windowDidLoad()
{
    QFont bold = window_->messageField().font();
    bold.setBold(true);
    window_->messageField().setFont(bold);
}

void NVXProgressPanelController::stopCopying()
{
    window().stopButton().setEnabled(false);
    isStopping_ = true;
    stopModal_();
}

void NVXProgressPanelController::updateUIComponents()
{
    rate_.record(clock_(), copiedSize());
    CopyProgressPanel& panel = window();
    panel.messageField().setText(formattedMessageText());
    panel.sourceFileField().setText(sourceFile());
    panel.amountField().setText(formattedAmountText());
    panel.rateField().setText(formattedRateText());
    panel.progressBar().setValue(permille());
}

QString NVXProgressPanelController::formattedMessageText() const
{
    const std::uint64_t total = numberOfTotalItems();
    const QString count = total <= 1
        ? QString::number(total)
        : QStringLiteral("%1 / %2").arg(numberOfCopiedItems()).arg(total);
    return localizedText(TextKey::copyingMessage, count, displayName(destinationURL()));
}

QString NVXProgressPanelController::formattedAmountText() const
{
    return localizedText(TextKey::transferCapacityMessage,
                         byteCountFormatter_.stringFromByteCount(copiedSize()),
                         byteCountFormatter_.stringFromByteCount(totalSize()));
}

QString NVXProgressPanelController::formattedRateText() const
{
    if (isStopping_)
        return localizedText(TextKey::stoppingMessage);
    const auto bytesPerSecond = rate_.bytesPerSecond();
    if (!bytesPerSecond)
        return {};
    const QString rate = byteCountFormatter_.stringFromByteCount(
                             static_cast<std::uint64_t>(std::max(*bytesPerSecond, 0.0)))
        + QStringLiteral("/s");
    const auto left = rate_.timeFor(totalSize() - std::min(copiedSize(), totalSize()));
    return left
        ? localizedText(TextKey::timeLeftMessage, rate, QString::fromStdString(durationText(*left)))
        : rate;
}

int NVXProgressPanelController::permille() const
{
    const auto total = static_cast<double>(totalSize());
    if (total <= 0)
        return 0;
    // The container headers are counted as well, so the plain number would overshoot.
    return static_cast<int>(std::min(static_cast<double>(copiedSize()) / total, 1.0) * wholeBar);
}

}  // namespace nivor
