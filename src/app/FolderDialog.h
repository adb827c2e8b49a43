/// The folder chooser on the screen.
#pragma once

#include "app/FolderChooser.h"

#include <QPointer>
#include <QWidget>

class QSettings;

namespace nivor {

/// Begins in the folder that was chosen last.
class FolderDialog : public FolderChooser {
public:
    FolderDialog(QWidget* parent, QSettings& settings);

    std::optional<QUrl> chooseFolder() override;

private:
    QPointer<QWidget> parent_;
    QSettings& settings_;
};

}  // namespace nivor
