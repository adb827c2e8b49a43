#include "Targets.h"

#include "FuzzedInput.h"
#include "Require.h"
#include "content/CopyFileName.h"
#include "content/CopyTargets.h"
#include "content/DestinationFolder.h"
#include "content/LocalFileName.h"
#include "content/PortableFileName.h"
#include "content/TextControls.h"
#include "content/VisibleName.h"
#include "ptp/FileHandle.h"
#include "support/TemporaryDirectory.h"

#include <QStringList>
#include <QUtf8StringView>

#include <cerrno>
#include <filesystem>
#include <set>

namespace nivor::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostNames = 12;
constexpr std::size_t mostLostRaces = 3;

/// Like a PTP string, but halves of surrogate pairs are let through.
QString nameFrom(FuzzedInput& choices)
{
    QString name(static_cast<qsizetype>(choices.u8()), Qt::Uninitialized);
    for (QChar& unit : name)
        unit = QChar(choices.u16());
    return name;
}

void requireLocalName(const QString& name)
{
    const std::string bytes = name.toStdString();
    require(!bytes.empty() && bytes != "." && bytes != "..", "a local name is no place of its own");
    require(bytes.find('/') == std::string::npos && bytes.find('\0') == std::string::npos,
            "a local name is no path");
    require(bytes.size() <= 255, "a local name fits into a folder");
    // Not by a look at what comes back from UTF-8: there a first U+FEFF is a mark and left out.
    require(name.isValidUtf16(), "a local name is valid UTF-16");
    for (const QChar unit : name) {
        require(unit.category() != QChar::Other_Control, "a local name has no control characters");
        require(!changesDirection(unit.unicode()) && !separatesLines(unit.unicode()),
                "a local name is shown as it is");
    }
}

void requirePortableName(const QString& localName)
{
    static const QString refused = QStringLiteral(u"\\:*?\"<>|");
    const QString name = portableFileName(localName);
    requireLocalName(name);
    for (const QChar unit : name)
        require(!refused.contains(unit), "a portable name has what every folder takes");
    require(!name.endsWith(u'.') && !name.endsWith(u' '), "a portable name ends as it is shown");
    require(portableFileName(name) == name, "a portable name stays as it is");
}

void requireVisible(const QString& visible)
{
    static const QString steering =
        QStringLiteral(u"\u061C\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2028\u2029"
                       u"\u2066\u2067\u2068\u2069");
    require(visible.isValidUtf16(), "a visible name is valid UTF-16");
    for (const QChar unit : visible) {
        require(unit.category() != QChar::Other_Control && !steering.contains(unit),
                "a visible name steers nothing");
    }
}

void examine(const QString& cameraName, qsizetype number, const QStringList& usedNames)
{
    const QString localName = localFileName(cameraName);
    requireLocalName(localName);
    requirePortableName(localName);
    requirePortableName(numberedLocalFileName(localName, number));
    require(localFileName(localName) == localName, "a local name stays as it is");
    requireLocalName(numberedLocalFileName(localName, number));
    require(numberedLocalFileName(localName, number)
                != numberedLocalFileName(localName, number + 1),
            "another number makes another name");

    const QString copyName = makeCopyFileName(usedNames, cameraName);
    require(usedNames.contains(cameraName) == (copyName != cameraName),
            "a name gets a number where it is used, only there");
    require(pathExtension(copyName) == pathExtension(cameraName), "a number keeps the extension");
    require(copyName.startsWith(deletingPathExtension(cameraName)), "a number keeps the stem");

    requireVisible(visibleName(cameraName));
}

/// A folder whose creations are sometimes lost to somebody else, who was there first.
class ContestedFolder {
public:
    std::shared_ptr<FileHandle> create(const fs::path& path)
    {
        require(path.parent_path() == folder(), "a copy stays in its folder");
        if (racesToLose > 0) {
            --racesToLose;
            require(FileHandle::create(path).isOpen(), "a free name can be created");
            paths_.insert(path);
        }
        auto file = std::make_shared<FileHandle>(FileHandle::create(path));
        require(file->isOpen() || file->openError() == EEXIST, "a local name can be created");
        require(!file->isOpen() || paths_.insert(path).second, "no file is given out twice");
        return file;
    }

    /// Puts a link to nowhere in the way; whoever follows it leaves the folder.
    void putLink(const QString& name)
    {
        const fs::path path = folder() / name.toStdString();
        std::error_code ignored;
        fs::create_symlink(folder().parent_path() / "nivor-fuzz-left-the-folder", path, ignored);
        paths_.insert(path);
    }

    void clear()
    {
        require(!fs::exists(folder().parent_path() / "nivor-fuzz-left-the-folder"),
                "no link is followed");
        for (const fs::path& path : paths_)
            fs::remove(path);
        require(fs::is_empty(folder()), "nothing else has been made");
        paths_.clear();
    }

    static const fs::path& folder()
    {
        static const test::TemporaryDirectory directory;
        return directory.path();
    }

    std::size_t racesToLose = 0;

private:
    std::set<fs::path> paths_;
};

}  // namespace

void fuzzFileName(ByteView input)
{
    FuzzedInput choices(input);
    ContestedFolder folder;
    CopyTargets targets(std::make_shared<DestinationFolder>(ContestedFolder::folder()),
                        [&](const fs::path& path) { return folder.create(path); });
    QStringList usedNames;
    QString name;
    for (std::size_t i = 0; i < mostNames && !choices.isOver(); ++i) {
        const std::uint8_t how = choices.u8();
        // Names matter most when they come again.
        if ((how & 1U) == 0 || usedNames.isEmpty())
            name = nameFrom(choices);
        else
            name =
                usedNames.at(static_cast<qsizetype>(choices.choice(mostNames)) % usedNames.size());
        examine(name, static_cast<qsizetype>(choices.u32()) + 1, usedNames);

        if ((how & 2U) != 0)
            folder.putLink(localFileName(name));
        folder.racesToLose = (how >> 2U) % (mostLostRaces + 1);
        require(targets.create(name)->isOpen(), "there is a free name in the end");
        if ((how & 0x10U) != 0)
            targets.recordUse(name);
        usedNames.append(name);
    }
    folder.clear();
}

}  // namespace nivor::fuzz
