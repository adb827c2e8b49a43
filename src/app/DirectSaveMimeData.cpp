#include "app/DirectSaveMimeData.h"

#include "app/DirectSaveFolder.h"

#include <QSysInfo>

#include <utility>

namespace nivor {
namespace {

// The protocol's answers to a target that has asked for the data.
constexpr const char* answerSaved = "S";
constexpr const char* answerFailed = "E";

QString offeredFormat()
{
    return QString::fromLatin1(DirectSaveProperty::name);
}

}  // namespace

DirectSaveMimeData::DirectSaveMimeData(const QString& fileName, FolderNamed folderNamed)
    : fileName_(fileName.toUtf8())
    , folderNamed_(std::move(folderNamed))
{
}

QStringList DirectSaveMimeData::formats() const
{
    // Qt asks this when it has just made a window the drag's source, and before any target hears
    // of the drag: the one moment to put the name there.
    property_.announce(fileName_);
    return {offeredFormat()};
}

bool DirectSaveMimeData::hasFormat(const QString& mimeType) const
{
    return mimeType == offeredFormat();
}

QVariant DirectSaveMimeData::retrieveData(const QString& mimeType, QMetaType /*type*/) const
{
    if (!hasFormat(mimeType))
        return {};
    // Some targets ask while the pointer is only above them, and have named nothing yet.
    const std::optional<QUrl> folder =
        directSaveFolder(property_.value(), QSysInfo::machineHostName());
    if (folder && folderNamed_) {
        folder_ = folder;
        folderNamed_(*folder);
    }
    // The files come later, but a target that waited for them would stand still meanwhile.
    return QByteArray(folder && folder == folder_ ? answerSaved : answerFailed);
}

}  // namespace nivor
