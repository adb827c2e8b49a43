#include "content/CopyResult.h"

#include <algorithm>

namespace nivor {

std::size_t CopyResult::copiedCount() const
{
    return static_cast<std::size_t>(std::count_if(
        files.begin(), files.end(), [](const CopiedFile& file) { return file.isCopied; }));
}

}  // namespace nivor
