// Objects that say of themselves that they lie where nothing can lie, and very many of them.
#include "app/ObjectListModel.h"
#include "content/ObjectTree.h"
#include "datasets/ObjectInfoData.h"
#include "faults/FaultFixture.h"
#include "support/PeakMemory.h"

#include <fmt/format.h>

#include <functional>

using namespace nivor;
using namespace nivor::test;

namespace {

constexpr std::uint16_t folderFormat = 0x3001;
constexpr std::uint16_t fileFormat = 0x3801;

// Under a sanitizer every object costs several times as much.
#if defined(__SANITIZE_THREAD__)
constexpr std::uint32_t scale = 50;
#elif defined(__SANITIZE_ADDRESS__)
constexpr std::uint32_t scale = 10;
#else
constexpr std::uint32_t scale = 1;
#endif
constexpr std::uint32_t million = 1'000'000 / scale;

std::shared_ptr<ObjectInfoData> object(std::uint32_t handle, std::uint32_t parent,
                                       std::uint16_t format,
                                       const QString& name = QStringLiteral("F"))
{
    auto made = std::make_shared<ObjectInfoData>();
    made->setMyHandle(QString::number(handle));
    made->setParentObject(QString::number(parent));
    made->setObjectFormat(format);
    made->setFileName(name);
    return made;
}

/// That many objects; `parentOf` tells the parent of each handle, from 1 on.
ObjectList objectsWith(std::uint32_t count,
                       const std::function<std::uint32_t(std::uint32_t)>& parentOf,
                       std::uint16_t format = folderFormat)
{
    ObjectList objects;
    objects.reserve(count);
    for (std::uint32_t handle = 1; handle <= count; ++handle)
        objects.push_back(object(handle, parentOf(handle), format));
    return objects;
}

/// The list, as a million of objects in a chain takes memory of its own.
struct TreeRow {
    std::string name;
    std::function<ObjectList()> make;
    std::size_t objects;
    std::size_t deepest;  ///< of the tree that the command line shows
    int shown;            ///< rows of the window

    friend void PrintTo(const TreeRow& row, std::ostream* out) { *out << row.name; }
};

std::vector<TreeRow> treeRows()
{
    const auto chain = [](std::uint32_t handle) { return handle - 1; };
    const auto itself = [](std::uint32_t handle) { return handle; };
    const auto nobody = [](std::uint32_t /*handle*/) { return 0xFFFFFFFF; };
    const auto top = [](std::uint32_t /*handle*/) { return 0U; };
    const auto first = [](std::uint32_t handle) { return handle == 1 ? 0U : 1U; };
    const auto ring = [](std::uint32_t count) {
        return [count](std::uint32_t handle) { return handle == 1 ? count : handle - 1; };
    };
    const auto heap = [](std::uint32_t handle) { return handle / 2; };
    constexpr std::size_t deepest = ObjectTree::deepestLevel;
    return {
        {"AFolderInItself", [=] { return objectsWith(1, itself); }, 1, 0, 0},
        {"TwoFoldersInEachOther", [=] { return objectsWith(2, ring(2)); }, 2, 1, 0},
        {"AnOrphan", [=] { return objectsWith(1, nobody); }, 1, 0, 0},
        {"FilesInAFile", [=] { return objectsWith(3, first, fileFormat); }, 3, 0, 3},
        {"TwoFoldersOfOneHandle",
         [] {
             return ObjectList{object(1, 0, folderFormat), object(1, 0, folderFormat),
                               object(2, 1, fileFormat)};
         },
         3, 1, 3},
        {"FoldersAHundredThousandDeep", [=] { return objectsWith(100'000, chain); }, 100'000,
         deepest, static_cast<int>(ObjectListModel::deepestLevel)},
        {"ARingOfAHundredThousandFolders", [=] { return objectsWith(100'000, ring(100'000)); },
         100'000, deepest, 0},
        {"AMillionInThemselves", [=] { return objectsWith(million, itself); }, million, 0, 0},
        {"AMillionOrphans", [=] { return objectsWith(million, nobody); }, million, 0, 0},
        {"AMillionAtTheTop", [=] { return objectsWith(million, top, fileFormat); }, million, 0,
         static_cast<int>(million)},
        {"AMillionInOneFolder", [=] { return objectsWith(million, first); }, million, 1,
         static_cast<int>(million)},
        {"AMillionInFoldersOfTwo", [=] { return objectsWith(million, heap); }, million,
         static_cast<std::size_t>(std::bit_width(million)) - 1, static_cast<int>(million)},
    };
}

class TreeFaults : public ::testing::TestWithParam<TreeRow> { };

TEST_P(TreeFaults, LoseNothingAndTakeTimeByTheirNumberAlone)
{
    const PeakMemory memory;
    const auto objects = std::make_shared<const ObjectList>(GetParam().make());
    ASSERT_EQ(objects->size(), GetParam().objects);
    const double listed = memory.mebibytes();

    const auto start = std::chrono::steady_clock::now();
    {
        const ObjectTree tree(*objects);
        EXPECT_EQ(tree.nodes().size(), GetParam().objects);
        std::size_t deepest = 0;
        for (const ObjectTree::Node& node : tree.nodes())
            deepest = std::max(deepest, node.depth);
        EXPECT_EQ(deepest, GetParam().deepest);
    }
    const auto built = std::chrono::steady_clock::now();
    ObjectListModel model;
    model.reload(objects);
    EXPECT_EQ(model.size(), GetParam().shown);
    const auto shown = std::chrono::steady_clock::now();

    const auto milliseconds = [](auto from, auto to) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(to - from).count();
    };
    const std::string figures =
        fmt::format("{} objects: list {:.0f} MiB, tree {} ms, window {} ms, {:.0f} MiB in all",
                    GetParam().objects, listed, milliseconds(start, built),
                    milliseconds(built, shown), memory.mebibytes());
    RecordProperty("figures", figures);
    std::cout << figures << '\n';
    // A time that grew with the square of their number would be hours.
    EXPECT_LT(shown - start, std::chrono::seconds(60));
}

INSTANTIATE_TEST_SUITE_P(Cells, TreeFaults, ::testing::ValuesIn(treeRows()),
                         [](const auto& cell) { return cell.param.name; });

/// The longest names there can be, as deep as a tree goes: each path is of 16,000 letters.
TEST(TreeOfLongNames, TakesNoMoreMemoryThanItsObjects)
{
    constexpr std::uint32_t folders = ObjectTree::deepestLevel;
    constexpr std::uint32_t files = 20'000;
    const QString name(254, u'L');
    ObjectList objects;
    for (std::uint32_t handle = 1; handle <= folders; ++handle)
        objects.push_back(object(handle, handle - 1, folderFormat, name));
    for (std::uint32_t i = 1; i <= files; ++i)
        objects.push_back(object(folders + i, folders, fileFormat, name));
    const PeakMemory memory;
    const ObjectTree tree(objects);
    EXPECT_EQ(tree.nodes().size(), folders + files);
    std::cout << fmt::format("{:.0f} MiB for the tree\n", memory.mebibytes());
    EXPECT_LT(memory.mebibytes(), 100);
}

class ManyObjects : public FaultFixture { };

TEST_F(ManyObjects, AHundredThousandAreListedInTheTimeThatTheyTake)
{
    constexpr std::uint32_t count = 100'000 / scale;
    const std::uint32_t folder = card->addFolder(u"DCIM");
    for (std::uint32_t i = 1; i < count; ++i)
        card->addFile(u"IMG.JPG", 100, folder);
    connect(Seam::Memory, {});
    longest = std::chrono::seconds(120);
    const PeakMemory memory;
    const auto start = std::chrono::steady_clock::now();
    const auto result = load();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(result.end, ContentLoader::End::Complete);
    EXPECT_EQ(result.listing.objects.size(), count);
    std::cout << fmt::format("{} objects: {:.1f} s, {:.0f} MiB\n", count, took.count(),
                             memory.mebibytes());
    EXPECT_LT(took.count(), 100);
}

}  // namespace
