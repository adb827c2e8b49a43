#include "app/CopyProgressPanel.h"

#include "app/ElidedLabel.h"
#include "app/LocalizedText.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QProgressBar>
#include <QPushButton>

#include <utility>

namespace nivor {
namespace {

constexpr int panelWidth = 460;

}  // namespace

CopyProgressPanel::CopyProgressPanel(std::function<void()> stop)
    : messageField_(new ElidedLabel)
    , sourceFileField_(new ElidedLabel)
    , progressBar_(new QProgressBar)
    , amountField_(new QLabel)
    , rateField_(new QLabel)
    , stopButton_(new QPushButton)
{
    setWindowTitle(localizedText(TextKey::copyPanelTitle));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                   | Qt::WindowCloseButtonHint);

    progressBar_->setRange(0, 1000);
    progressBar_->setTextVisible(false);
    progressBar_->setAccessibleName(localizedText(TextKey::copyProgressName));
    amountField_->setTextFormat(Qt::PlainText);
    rateField_->setTextFormat(Qt::PlainText);
    rateField_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    stopButton_->setText(localizedText(TextKey::stopButtonMessage));
    stopButton_->setAccessibleDescription(localizedText(TextKey::stopButtonDescription));
    stopButton_->setDefault(true);
    connect(stopButton_, &QPushButton::clicked, this, [action = std::move(stop)] { action(); });

    auto* figures = new QHBoxLayout;
    figures->addWidget(amountField_);
    figures->addStretch();
    figures->addWidget(rateField_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(stopButton_);
    auto* lines = new QVBoxLayout(this);
    lines->addWidget(messageField_);
    lines->addWidget(sourceFileField_);
    lines->addSpacing(lines->spacing());
    lines->addWidget(progressBar_);
    lines->addLayout(figures);
    lines->addSpacing(lines->spacing());
    lines->addLayout(buttons);

    setFixedSize(panelWidth, sizeHint().height());
    stopButton_->setFocus();
}

void CopyProgressPanel::reject()
{
    // Disabled once it has been pressed, and then this does nothing.
    stopButton_->click();
}

void CopyProgressPanel::closeEvent(QCloseEvent* event)
{
    event->ignore();
    reject();
}

}  // namespace nivor
