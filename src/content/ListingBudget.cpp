#include "content/ListingBudget.h"

#include "datasets/ObjectInfoData.h"
#include "datasets/Thumbnail.h"

namespace nivor {
namespace {

// Its entries in the list and in the table of handles, its handle as a text, and what the heap
// adds to each block.
constexpr std::size_t allowance = 400;

std::size_t bytesOf(const QString& text)
{
    return static_cast<std::size_t>(text.size()) * sizeof(QChar);
}

}  // namespace

ListingBudget::ListingBudget() = default;

ListingBudget::ListingBudget(const Limits& limits)
    : limits_(limits)
{
}

void ListingBudget::add(const ObjectInfoData& object)
{
    ++objects_;
    recordBytes_ += sizeof(object) + allowance + bytesOf(object.fileName())
        + bytesOf(object.dateCreated()) + bytesOf(object.dateModified());
    if (const auto thumbnail = object.thumbnail())
        thumbnailBytes_ += thumbnail->fileSize();
}

}  // namespace nivor
