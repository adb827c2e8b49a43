#include "content/ObjectTree.h"

#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

namespace nivor {
namespace {

/// A name as one component of a path.
QString pathComponent(QString name)
{
    name.replace(u'/', u'_').replace(QChar(u'\0'), QChar(u'_'));
    return name.isEmpty() ? QStringLiteral("_") : name;
}

}  // namespace

/// Walks the list once to see who lies in what, and once from the top down.
class ObjectTree::Builder {
public:
    Builder(const ObjectList& objects, std::vector<Node>& nodes)
        : objects_(objects)
        , nodes_(nodes)
        , isPlaced_(objects.size(), false)
    {
        nodes_.reserve(objects.size());
        // The first of two objects with the same handle is the one that contents belong to.
        for (std::size_t i = objects.size(); i-- > 0;)
            byHandle_.insert(objects[i]->myHandle(), i);
        for (std::size_t i = 0; i < objects.size(); ++i)
            findParent(i);
    }

    void build()
    {
        for (const std::size_t top : tops_)
            placeWithContents(top);
        // What is left lies in a circle of folders, or too deep: such a walk ended above it.
        for (std::size_t i = 0; i < objects_.size(); ++i)
            placeWithContents(i);
    }

private:
    void findParent(std::size_t index)
    {
        const QString parent = objects_[index]->parentObject();
        const auto found = byHandle_.constFind(parent);
        const bool isTop = parent == QStringLiteral("0") || found == byHandle_.cend()
            || found.value() == index || !objects_[found.value()]->isAssociation();
        if (isTop)
            tops_.push_back(index);
        else
            contents_[found.value()].push_back(index);
    }

    struct Pending {
        std::size_t index;
        std::size_t parent;
        std::size_t depth;
    };

    void placeWithContents(std::size_t top)
    {
        std::vector<Pending> pending{{top, 0, 0}};
        while (!pending.empty()) {
            const Pending next = pending.back();
            pending.pop_back();
            if (isPlaced_[next.index])
                continue;
            isPlaced_[next.index] = true;
            place(next, pending);
        }
    }

    void place(const Pending& next, std::vector<Pending>& pending)
    {
        const auto& object = objects_[next.index];
        const std::size_t number = nodes_.size();
        nodes_.push_back({.object = object,
                          .name = NVX_stringByTrimmingNullCharacters(object->fileName()),
                          .parent = next.parent,
                          .depth = next.depth});

        const auto contents = contents_.constFind(next.index);
        if (contents == contents_.cend() || next.depth >= deepestLevel)
            return;
        for (auto child = contents->rbegin(); child != contents->rend(); ++child)
            pending.push_back({*child, number, next.depth + 1});
    }

    const ObjectList& objects_;
    std::vector<Node>& nodes_;
    std::vector<bool> isPlaced_;
    QHash<QString, std::size_t> byHandle_;
    QHash<std::size_t, std::vector<std::size_t>> contents_;
    std::vector<std::size_t> tops_;
};

ObjectTree::ObjectTree(const ObjectList& objects)
{
    Builder(objects, nodes_).build();
}

QString ObjectTree::path(std::size_t index) const
{
    QString path = pathComponent(nodes_[index].name);
    while (nodes_[index].depth > 0) {
        index = nodes_[index].parent;
        path.prepend(pathComponent(nodes_[index].name) + u'/');
    }
    return path;
}

std::size_t ObjectTree::descendantCount(std::size_t index) const
{
    std::size_t end = index + 1;
    while (end < nodes_.size() && nodes_[end].depth > nodes_[index].depth)
        ++end;
    return end - index - 1;
}

}  // namespace nivor
