#include "content/ObjectSelection.h"

#include "content/FileGlob.h"
#include "datasets/ObjectInfoData.h"

#include <cstddef>
#include <functional>

namespace nivor {
namespace {

using Nodes = std::vector<ObjectTree::Node>;
using Condition = std::function<bool(std::size_t index)>;
using Text = std::function<QString(std::size_t index)>;

std::vector<std::size_t> indexesWhere(const Nodes& nodes, const Condition& condition)
{
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (condition(i))
            indexes.push_back(i);
    }
    return indexes;
}

/// The decimal text of the handle that `word` is, or nothing.
QString handleKey(const QString& word)
{
    const bool isHexadecimal = word.startsWith(QStringLiteral("0x"), Qt::CaseInsensitive);
    bool ok = false;
    const uint handle = isHexadecimal ? word.mid(2).toUInt(&ok, 16) : word.toUInt(&ok, 10);
    return ok ? QString::number(handle) : QString();
}

/// A path without the slashes that a shell's completion leaves at its ends.
QString trimmedPath(QString path)
{
    while (path.endsWith(u'/'))
        path.chop(1);
    qsizetype slashes = 0;
    while (slashes < path.size() && path.at(slashes) == u'/')
        ++slashes;
    return path.mid(slashes);
}

/// The nodes whose `text` is `wanted`, or else those for which it looks the same: one name may be
/// written in several ways, and a card may hold two files whose names differ in nothing else.
std::vector<std::size_t> indexesCalled(const Nodes& nodes, const QString& wanted, const Text& text)
{
    auto exact = indexesWhere(nodes, [&](std::size_t index) { return text(index) == wanted; });
    if (!exact.empty())
        return exact;
    const QString normalized = wanted.normalized(QString::NormalizationForm_C);
    return indexesWhere(nodes, [&](std::size_t index) {
        return text(index).normalized(QString::NormalizationForm_C) == normalized;
    });
}

std::vector<std::size_t> indexesOf(const ObjectTree& tree, const QString& word)
{
    const Nodes& nodes = tree.nodes();
    if (word.contains(u'/')) {
        const QString path = trimmedPath(word);
        auto called =
            indexesCalled(nodes, path, [&tree](std::size_t index) { return tree.path(index); });
        if (!called.empty())
            return called;
        return indexesWhere(nodes, [&tree, glob = FileGlob(path)](std::size_t index) {
            return glob.matchesPath(tree.path(index));
        });
    }

    auto called =
        indexesCalled(nodes, word, [&nodes](std::size_t index) { return nodes[index].name; });
    if (!called.empty())
        return called;
    const QString key = handleKey(word);
    auto byHandle = indexesWhere(nodes, [&](std::size_t index) {
        return !key.isEmpty() && nodes[index].object->myHandle() == key;
    });
    if (!byHandle.empty())
        return byHandle;
    return indexesWhere(nodes, [&nodes, glob = FileGlob(word)](std::size_t index) {
        return glob.matchesName(nodes[index].name);
    });
}

}  // namespace

ObjectSelection selectObjects(const ObjectTree& tree, const QStringList& words)
{
    const Nodes& nodes = tree.nodes();
    ObjectSelection selection;
    std::vector<bool> isSelected(nodes.size(), false);
    for (const QString& word : words) {
        const std::vector<std::size_t> indexes = indexesOf(tree, word);
        if (indexes.empty())
            selection.unmatched.push_back(word);
        bool hasFile = false;
        for (const std::size_t index : indexes) {
            const std::size_t end = index + 1 + tree.descendantCount(index);
            for (std::size_t i = index; i < end; ++i) {
                if (nodes[i].object->isAssociation())
                    continue;
                hasFile = true;
                if (!isSelected[i])
                    selection.files.push_back(nodes[i].object);
                isSelected[i] = true;
            }
        }
        if (!indexes.empty() && !hasFile)
            selection.emptyHanded.push_back(word);
    }
    return selection;
}

}  // namespace nivor
