#include "cli/ObjectPaths.h"

#include "content/ObjectTree.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

namespace nivor {

ObjectPaths::ObjectPaths(const ContentListing& listing)
{
    const ObjectTree tree(listing.objects);
    for (const ObjectTree::Node& node : tree.nodes())
        paths_.insert(node.object.get(), node.path);
}

QString ObjectPaths::of(const ObjectInfoData& object) const
{
    const auto path = paths_.constFind(&object);
    return path == paths_.cend() ? NVX_stringByTrimmingNullCharacters(object.fileName()) : *path;
}

QString ObjectPaths::shown(const ObjectInfoData& object) const
{
    return visibleName(of(object));
}

}  // namespace nivor
