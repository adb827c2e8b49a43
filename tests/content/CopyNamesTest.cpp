#include "content/CopyRunFixture.h"
#include "content/VisibleName.h"
#include "ptp/FileHandle.h"
#include "support/Text.h"

#include <cerrno>
#include <map>
#include <set>

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;
namespace fs = std::filesystem;

namespace {

struct NameCase {
    std::u16string fromCamera;
    std::string onDisk;
    std::string shown;  ///< to the user, in lists and messages
};

std::u16string repeated(std::size_t count, char16_t unit, const char16_t* end = u"")
{
    return std::u16string(count, unit) + end;
}

/// In the order of the run: a name that is taken by then gets a number.
const std::vector<NameCase>& nameCases()
{
    static const std::vector<NameCase> cases = {
        // Paths.
        {u"../escaped", ".._escaped", "../escaped"},
        {u"../../../../../../tmp/escaped", ".._.._.._.._.._.._tmp_escaped",
         "../../../../../../tmp/escaped"},
        {u"/etc/passwd", "_etc_passwd", "/etc/passwd"},
        {u"a/../../b.JPG", "a_.._.._b.JPG", "a/../../b.JPG"},
        {u"inside/b.JPG", "inside_b.JPG", "inside/b.JPG"},
        {u"trailing/", "trailing_", "trailing/"},
        {u"/", "_", "/"},
        {u"//", "__", "//"},
        // Of other systems: here they are ordinary characters of one name.
        {u"..\\..\\x", "..\\..\\x", "..\\..\\x"},
        {u"C:\\x", "C:\\x", "C:\\x"},
        {u"C:x.JPG", "C:x.JPG", "C:x.JPG"},
        {u"\\\\server\\share", "\\\\server\\share", "\\\\server\\share"},
        {u"file://x", "file:__x", "file://x"},
        {u"a?b*c<d>e|f\"g", "a?b*c<d>e|f\"g", "a?b*c<d>e|f\"g"},
        {u"CON", "CON", "CON"},
        // Dots, nothing, blanks.
        {u".", "__1.", "."},
        {u"..", "__2.", ".."},
        {u"", "__3.", ""},
        {u"...", "...", "..."},
        {u".hidden", ".hidden", ".hidden"},
        {u"dot.", "dot.", "dot."},
        {u" ", " ", " "},
        {u"blank ", "blank ", "blank "},
        // What a shell or a program could take for something else.
        {u"-rf", "-rf", "-rf"},
        {u"--help", "--help", "--help"},
        {u"~", "~", "~"},
        {u"$(reboot)`reboot`;&", "$(reboot)`reboot`;&", "$(reboot)`reboot`;&"},
        {u"%n%s%1_%d.JPG", "%n%s%1_%d.JPG", "%n%s%1_%d.JPG"},
        {u"{}.JPG", "{}.JPG", "{}.JPG"},
        // Controls.
        {u"line\nfeed", "line_feed", "line␊feed"},
        {u"\x1b]0;title\a\x1b[2J", "_]0;title__[2J", "␛]0;title␇␛[2J"},
        {u"delete\x7f", "delete_", "delete␡"},
        {u"c1\u009b31m", "c1_31m", "c1\\x9b31m"},
        // The text ends where its NUL is, for the user as well.
        {std::u16string(u"nul\0.exe.JPG", 12), "nul", "nul"},
        // Directions: without this the first would be shown as "photo_exe.jpg".
        {u"photo_\u202Egpj.exe", "photo__gpj.exe", "photo_\\u202egpj.exe"},
        {u"\u2066a\u2069\u200E\u200F\u061C", "_a____", "\\u2066a\\u2069\\u200e\\u200f\\u061c"},
        {u"two\u2028lines\u2029", "two_lines_", "two\\u2028lines\\u2029"},
        // Joiners are part of how words and pictures are written.
        {u"می\u200Cخواهم.JPG", "می\u200Cخواهم.JPG", "می\u200Cخواهم.JPG"},
        // Twins on a folder that is not case-blind, and of different composition.
        {u"TWIN.JPG", "TWIN.JPG", "TWIN.JPG"},
        {u"twin.jpg", "twin.jpg", "twin.jpg"},
        {u"\u00e9.JPG", "\u00e9.JPG", "\u00e9.JPG"},
        {u"e\u0301.JPG", "e\u0301.JPG", "e\u0301.JPG"},
        // Equal once they are harmless.
        {u"same?/name", "same?_name", "same?/name"},
        {u"same?\nname", "same?_name_1.", "same?␊name"},
        // Long: 254 units are the most that a camera can send, 255 bytes the most that fit.
        {repeated(254, u'L'), std::string(254, 'L'), std::string(254, 'L')},
        {repeated(1000, u'M'), std::string(254, 'M'), std::string(254, 'M')},
        {repeated(254, u'L'), std::string(252, 'L') + "_1.", std::string(254, 'L')},
        {repeated(250, u'\u00fc', u".JPG"), QString(125, QChar(u'\u00fc')).toStdString() + ".JPG",
         QString(250, QChar(u'\u00fc')).toStdString() + ".JPG"},
    };
    return cases;
}

/// A folder to copy into, next to what must not be touched.
class CopyNames : public CopyRunFixture {
protected:
    CopyNames()
    {
        fs::create_directories(target());
        writeText(outside() / "canary", "alive");
        writeText(outside() / "escaped", "mine");
        writeText(outside() / "x", "mine");
        before = treeBut(target());
    }

    ~CopyNames() override
    {
        EXPECT_EQ(treeBut(target()), before) << "something outside the folder has changed";
    }

    CopyResult copyIntoTarget(CopyTargets::CreateFile createFile = {})
    {
        const ContentListing listing = load({.thumbnails = false}).listing;
        CopyRun run(engine, log.logger(), listing.handles, observer, std::move(createFile));
        return run.startCopyingItems(listing.objects, target(), progress);
    }

    const fs::path& outside() const { return destination.path(); }
    fs::path target() const { return outside() / "a" / "b"; }

    std::set<std::string> namesInTarget() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(target()))
            names.insert(entry.path().filename().string());
        return names;
    }

    /// Every path outside `folder`, with what it holds.
    std::map<fs::path, ByteBuffer> treeBut(const fs::path& folder) const
    {
        std::map<fs::path, ByteBuffer> tree;
        for (fs::recursive_directory_iterator entry(outside()), end; entry != end; ++entry) {
            if (entry->path() == folder)
                entry.disable_recursion_pending();
            tree[entry->path()] = entry->is_regular_file() ? bytesOf(entry->path()) : ByteBuffer();
        }
        return tree;
    }

    std::map<fs::path, ByteBuffer> before;
};

TEST_F(CopyNames, EveryNameBecomesOneFileOfTheFolder)
{
    std::vector<std::uint32_t> made;
    for (const NameCase& name : nameCases())
        made.push_back(card->addFile(name.fromCamera, 100 + made.size()));
    connect();
    const CopyResult result = copyIntoTarget();

    ASSERT_EQ(result.files.size(), nameCases().size());
    std::set<std::string> expected;
    for (std::size_t i = 0; i < nameCases().size(); ++i) {
        const NameCase& name = nameCases()[i];
        SCOPED_TRACE(name.shown.substr(0, 60));
        const CopiedFile& file = result.files[i];
        EXPECT_TRUE(file.isCopied) << file.failure;
        EXPECT_EQ(file.path, target() / name.onDisk);
        EXPECT_TRUE(holdsObject(target() / name.onDisk, made[i], 100 + i));
        const QString cameraName = NVX_stringByTrimmingNullCharacters(file.object->fileName());
        EXPECT_EQ(visibleName(cameraName).toStdString(), name.shown);
        expected.insert(name.onDisk);
    }
    // Each a name of its own, and nothing besides.
    EXPECT_EQ(expected.size(), nameCases().size());
    EXPECT_EQ(namesInTarget(), expected);
    EXPECT_THAT(log.messagesOf(copyEvent),
                ElementsAre("startCopyingItems (copyItemCount = "
                                + std::to_string(nameCases().size()) + ")",
                            "startCopyingItem (result = success)"));
}

TEST_F(CopyNames, LinksInTheFolderAreNamesThatAreTaken)
{
    fs::create_symlink(outside() / "canary", target() / "FILE.JPG");
    fs::create_symlink(outside() / "nothing", target() / "DANGLING.JPG");
    fs::create_symlink("LOOP.JPG", target() / "LOOP.JPG");
    fs::create_directory_symlink(outside(), target() / "FOLDER.JPG");
    fs::create_hard_link(outside() / "x", target() / "HARD.JPG");
    const std::set<std::string> links = namesInTarget();
    for (const char16_t* name :
         {u"FILE.JPG", u"DANGLING.JPG", u"LOOP.JPG", u"FOLDER.JPG", u"HARD.JPG"})
        handles.push_back(card->addFile(name, 100));
    connect();
    EXPECT_EQ(copyIntoTarget().copiedCount(), 5U);
    std::set<std::string> expected = links;
    expected.insert({"FILE_1.JPG", "DANGLING_1.JPG", "LOOP_1.JPG", "FOLDER_1.JPG", "HARD_1.JPG"});
    EXPECT_EQ(namesInTarget(), expected);
    EXPECT_TRUE(holdsObject(target() / "DANGLING_1.JPG", handles[1], 100));
    EXPECT_TRUE(fs::is_symlink(target() / "DANGLING.JPG"));
    EXPECT_FALSE(fs::exists(outside() / "nothing"));
}

TEST_F(CopyNames, ALinkThatAppearsAtTheLastMomentIsNotFollowed)
{
    const std::uint32_t file = card->addFile(u"IMG.JPG", 100);
    connect();
    bool hasAppeared = false;
    const CopyResult result = copyIntoTarget([this, &hasAppeared](const fs::path& path) {
        if (!std::exchange(hasAppeared, true))
            fs::create_symlink(outside() / "canary", path);
        return std::make_shared<FileHandle>(FileHandle::create(path));
    });
    EXPECT_EQ(result.copiedCount(), 1U);
    EXPECT_TRUE(holdsObject(target() / "IMG_1.JPG", file, 100));
}

TEST_F(CopyNames, CaseTwinsOnACaseBlindFolderAreNumbered)
{
    std::vector<std::uint32_t> made;
    for (const char16_t* name : {u"IMG.JPG", u"img.jpg", u"Img.Jpg", u"IMG.JPG"})
        made.push_back(card->addFile(name, 100));
    connect();
    std::set<QString> taken;
    const CopyResult result = copyIntoTarget([&taken](const fs::path& path) {
        const QString folded = QString::fromStdString(path.filename().string()).toCaseFolded();
        return std::make_shared<FileHandle>(taken.insert(folded).second
                                                ? FileHandle::create(path)
                                                : FileHandle::unopened(EEXIST, path));
    });
    EXPECT_EQ(result.copiedCount(), 4U);
    EXPECT_TRUE(holdsObject(target() / "IMG.JPG", made[0], 100));
    EXPECT_TRUE(holdsObject(target() / "img_1.jpg", made[1], 100));
    // Its own numbers go on until one is free on that folder.
    EXPECT_TRUE(holdsObject(target() / "Img_2.Jpg", made[2], 100));
    EXPECT_TRUE(holdsObject(target() / "IMG_3.JPG", made[3], 100));
    EXPECT_EQ(namesInTarget().size(), 4U);
}

/// A folder that refuses what FAT and NTFS do, with EINVAL.
std::shared_ptr<FileHandle> createOnPickyFolder(const fs::path& path)
{
    const std::string name = path.filename().string();
    const bool isRefused = name.find_first_of("\\:*?\"<>|") != std::string::npos
        || name.ends_with('.') || name.ends_with(' ') || name == "CON" || name == "nul.JPG";
    return std::make_shared<FileHandle>(isRefused ? FileHandle::unopened(EINVAL, path)
                                                  : FileHandle::create(path));
}

TEST_F(CopyNames, AFolderThatRefusesCharactersGetsPortableNames)
{
    const std::vector<std::pair<std::u16string, std::string>> names = {
        {u"PLAIN.JPG", "PLAIN.JPG"}, {u"C:\\x", "C__x"},        {u"..\\..\\y", ".._.._y"},
        {u"a:b.JPG", "a_b.JPG"},     {u"a?b.JPG", "a_b_1.JPG"}, {u"a_b.JPG", "a_b_2.JPG"},
        {u"a:b.JPG", "a_b_3.JPG"},   {u"CON", "_CON"},          {u"nul.JPG", "_nul.JPG"},
        {u"dot.", "dot_"},           {u"blank ", "blank_"},     {u"README", "README"},
        {u"README", "README_1_"},    {u"...", "___"},
    };
    for (const auto& [fromCamera, onDisk] : names)
        handles.push_back(card->addFile(fromCamera, 100));
    connect();
    const CopyResult result = copyIntoTarget(&createOnPickyFolder);
    ASSERT_EQ(result.files.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_TRUE(result.files[i].isCopied) << result.files[i].failure;
        EXPECT_EQ(result.files[i].path.filename(), names[i].second);
        EXPECT_TRUE(holdsObject(target() / names[i].second, handles[i], 100)) << names[i].second;
    }
    EXPECT_EQ(namesInTarget().size(), names.size());
}

TEST_F(CopyNames, ARefusalThatNoOtherNameMendsIsTold)
{
    card->addFile(u"A.JPG", 100);
    card->addFile(u"B:B.JPG", 100);
    connect();
    const CopyResult result = copyIntoTarget([](const fs::path& path) {
        return std::make_shared<FileHandle>(FileHandle::unopened(EINVAL, path));
    });
    EXPECT_EQ(result.files.at(0).failure,
              "Could not create " + (target() / "A.JPG").string() + ": Invalid argument");
    EXPECT_EQ(result.files.at(1).failure,
              "Could not create " + (target() / "B_B.JPG").string() + ": Invalid argument");
}

}  // namespace
