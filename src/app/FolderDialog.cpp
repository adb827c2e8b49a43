#include "app/FolderDialog.h"

#include "app/LocalizedText.h"

#include <QDir>
#include <QFileDialog>
#include <QSettings>
#include <QStandardPaths>

namespace nivor {
namespace {

const QString lastFolderKey = QStringLiteral("LastFolderKey");

}  // namespace

FolderDialog::FolderDialog(QWidget* parent, QSettings& settings)
    : parent_(parent)
    , settings_(settings)
{
}

std::optional<QUrl> FolderDialog::chooseFolder()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString usual = QDir(pictures).exists() ? pictures : QDir::homePath();
    const QString folder = QFileDialog::getExistingDirectory(
        parent_, localizedText(TextKey::chooseFolderTitle),
        settings_.value(lastFolderKey, usual).toString(), QFileDialog::ShowDirsOnly);
    if (folder.isEmpty())
        return std::nullopt;
    settings_.setValue(lastFolderKey, folder);
    return QUrl::fromLocalFile(folder);
}

}  // namespace nivor
