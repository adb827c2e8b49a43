#include "app/IconSet.h"

#include "codes/ObjectFormatCode.h"
#include "content/CopyFileName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <QHash>

namespace nivor {
namespace {

enum class Kind : std::uint8_t { Folder, Film, Sound, Picture, Other };

/// For cameras that call every file the same.
Kind kindOfName(const QString& fileName)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("jpg"), Kind::Picture},  {QStringLiteral("jpeg"), Kind::Picture},
        {QStringLiteral("png"), Kind::Picture},  {QStringLiteral("tif"), Kind::Picture},
        {QStringLiteral("tiff"), Kind::Picture}, {QStringLiteral("heic"), Kind::Picture},
        {QStringLiteral("dng"), Kind::Picture},  {QStringLiteral("raw"), Kind::Picture},
        {QStringLiteral("mov"), Kind::Film},     {QStringLiteral("mp4"), Kind::Film},
        {QStringLiteral("avi"), Kind::Film},     {QStringLiteral("mpg"), Kind::Film},
        {QStringLiteral("mts"), Kind::Film},     {QStringLiteral("wav"), Kind::Sound},
        {QStringLiteral("mp3"), Kind::Sound},
    };
    const QString name = NVX_stringByTrimmingNullCharacters(fileName);
    return kinds.value(pathExtension(name).toLower(), Kind::Other);
}

Kind kindOf(const ObjectInfoData& object)
{
    using Code = ObjectFormatCode;
    const std::uint16_t format = object.objectFormat();
    switch (static_cast<Code>(format)) {
    case Code::Association:
        return Kind::Folder;
    case Code::AVI:
    case Code::MPEG:
    case Code::QuickTime:
        return Kind::Film;
    case Code::WAV:
    case Code::MP3:
        return Kind::Sound;
    default:
        break;
    }
    // The ranges of formats: pictures (ISO 15740, 6.2), sounds and films (MTP 1.1, A).
    if ((format & 0xF800) == 0x3800)
        return Kind::Picture;
    if ((format & 0xFF80) == 0xB980)
        return Kind::Film;
    if ((format & 0xFF80) == 0xB900)
        return Kind::Sound;
    return kindOfName(object.fileName());
}

}  // namespace

QIcon plainIcon(const QString& name)
{
    return QIcon(QStringLiteral(":/icons/") + name + QStringLiteral(".svg"));
}

QIcon lineIcon(const QString& name, const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    return plainIcon((isDark ? QStringLiteral("dark/") : QStringLiteral("light/")) + name);
}

QIcon kindIcon(const ObjectInfoData& object)
{
    switch (kindOf(object)) {
    case Kind::Folder:
        return plainIcon(QStringLiteral("kind-folder"));
    case Kind::Film:
        return plainIcon(QStringLiteral("kind-film"));
    case Kind::Sound:
        return plainIcon(QStringLiteral("kind-sound"));
    case Kind::Picture:
        return {};
    case Kind::Other:
        return plainIcon(QStringLiteral("kind-file"));
    }
    return {};
}

}  // namespace nivor
