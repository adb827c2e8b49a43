#include "content/SortDescriptor.h"

#include "content/LocalMoments.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <compare>
#include <optional>
#include <utility>

namespace nivor {
namespace {

/// What an object is compared by, worked out once: a sort asks for it again and again.
struct Ranked {
    std::shared_ptr<ObjectInfoData> object;
    std::optional<QCollatorSortKey> name;  ///< what no descriptor asks for stays empty
    qint64 milliseconds = 0;
    std::uint64_t size = 0;
};

QCollator nameCollator()
{
    // The locale of programs knows no order but that of the code points.
    QLocale locale = QLocale().collation();
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English);
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

bool asksFor(const SortDescriptors& descriptors, SortKey key)
{
    return std::any_of(descriptors.begin(), descriptors.end(),
                       [key](const SortDescriptor& by) { return by.key == key; });
}

std::vector<Ranked> ranked(ObjectList& objects, const SortDescriptors& descriptors)
{
    const bool needsNames = asksFor(descriptors, SortKey::FileName);
    const bool needsDates = asksFor(descriptors, SortKey::ModifiedDate);
    const QCollator collator = nameCollator();
    LocalMoments moments;
    std::vector<Ranked> list;
    list.reserve(objects.size());
    for (auto& object : objects) {
        Ranked& entry = list.emplace_back();
        if (needsNames)
            entry.name = collator.sortKey(NVX_stringByTrimmingNullCharacters(object->fileName()));
        if (needsDates)
            entry.milliseconds = moments.millisecondsOf(object->modifiedDate());
        entry.size = object->objectCompressedSize();
        entry.object = std::move(object);
    }
    return list;
}

std::strong_ordering compare(const Ranked& a, const Ranked& b, SortKey key)
{
    switch (key) {
    case SortKey::FileName:
        return a.name->compare(*b.name) <=> 0;
    case SortKey::ModifiedDate:
        return a.milliseconds <=> b.milliseconds;
    case SortKey::ObjectCompressedSize:
        return a.size <=> b.size;
    }
    return std::strong_ordering::equal;
}

}  // namespace

void sortObjects(ObjectList& objects, const SortDescriptors& descriptors)
{
    if (descriptors.empty())
        return;
    std::vector<Ranked> list = ranked(objects, descriptors);
    std::stable_sort(list.begin(), list.end(), [&](const Ranked& a, const Ranked& b) {
        for (const SortDescriptor& by : descriptors) {
            const auto order = compare(a, b, by.key);
            if (order != std::strong_ordering::equal)
                return by.isAscending ? order < 0 : order > 0;
        }
        return false;
    });
    std::transform(list.begin(), list.end(), objects.begin(),
                   [](Ranked& entry) { return std::move(entry.object); });
}

}  // namespace nivor
