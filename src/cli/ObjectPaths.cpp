#include "cli/ObjectPaths.h"

#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

namespace nivor {

ObjectPaths::ObjectPaths(const ContentListing& listing)
    : tree_(listing.objects)
{
    for (std::size_t i = 0; i < tree_.nodes().size(); ++i)
        indexes_.insert(tree_.nodes()[i].object.get(), i);
}

QString ObjectPaths::of(const ObjectInfoData& object) const
{
    const auto index = indexes_.constFind(&object);
    return index == indexes_.cend() ? NVX_stringByTrimmingNullCharacters(object.fileName())
                                    : tree_.path(*index);
}

QString ObjectPaths::shown(const ObjectInfoData& object) const
{
    return visibleName(of(object));
}

}  // namespace nivor
