#include "content/DeleteResult.h"

#include <algorithm>

namespace nivor {

std::size_t DeleteResult::deletedCount() const
{
    return static_cast<std::size_t>(std::count_if(
        files.begin(), files.end(), [](const DeletedFile& file) { return file.isDeleted; }));
}

}  // namespace nivor
