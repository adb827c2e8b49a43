#include "content/ContentListing.h"

#include "datasets/ObjectInfoData.h"

#include <algorithm>

namespace nivor {

void ContentListing::remove(const QString& myHandle)
{
    const auto found =
        std::find_if(objects.begin(), objects.end(),
                     [&myHandle](const auto& object) { return object->myHandle() == myHandle; });
    handles.remove(myHandle);
    if (found != objects.end())
        objects.erase(found);
}

}  // namespace nivor
