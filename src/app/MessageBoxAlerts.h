/// Alerts on the screen.
#pragma once

#include "app/Alert.h"

#include <QPointer>
#include <QWidget>

namespace nivor {

class MessageBoxAlerts : public Alerts {
public:
    /// `parent`: the window that alerts belong to; may be absent, and may go away.
    explicit MessageBoxAlerts(QWidget* parent = nullptr);

    int runModal(const Alert& alert) override;

private:
    QPointer<QWidget> parent_;
};

}  // namespace nivor
