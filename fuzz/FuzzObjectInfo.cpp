#include "Targets.h"

#include "Require.h"
#include "datasets/ObjectInfoData.h"
#include "foundation/ByteReader.h"

#include <QStringView>

namespace nivor::fuzz {
namespace {

// The container's header, the dataset's numbers, and a count for each of the three texts.
constexpr std::size_t fixedSize = 12 + 52;
constexpr std::size_t smallestSize = fixedSize + 3;

void requireText(const QString& text)
{
    require(text.size() <= 255, "a text is no longer than its count can say");
    require(QStringView(text).isValidUtf16(), "a text is valid UTF-16");
}

void requireSame(const ObjectInfoData& one, const ObjectInfoData& other)
{
    require(one.fileName() == other.fileName() && one.dateCreated() == other.dateCreated()
                && one.dateModified() == other.dateModified()
                && one.modifiedDate() == other.modifiedDate()
                && one.objectCompressedSize() == other.objectCompressedSize()
                && one.parentObject() == other.parentObject(),
            "the same bytes make the same record");
}

}  // namespace

void fuzzObjectInfo(ByteView input)
{
    ObjectInfoData record;
    const bool parsed = ObjectInfoData::tryParse(input, record);
    requireText(record.fileName());
    requireText(record.dateCreated());
    requireText(record.dateModified());

    ObjectInfoData again;
    require(ObjectInfoData::tryParse(input, again) == parsed, "parsing depends on the bytes alone");
    requireSame(record, again);
    if (!parsed)
        return;

    require(input.size() >= smallestSize, "every field of a record was sent");
    ByteReader reader(input, 12);
    require(record.storageID() == reader.u32(), "StorageID is that of the wire");
    require(record.objectFormat() == reader.u16(), "ObjectFormat is that of the wire");
    reader.skip(2);
    require(record.objectCompressedSize() == reader.u32(), "ObjectCompressedSize likewise");
    require(record.thumbFormat() == reader.u16(), "ThumbFormat likewise");
    require(record.thumbCompressedSize() == reader.u32(), "ThumbCompressedSize likewise");
    require(record.fileName().isEmpty() || record.fileName().size() == input[fixedSize],
            "a name has as many units as its count says");
}

}  // namespace nivor::fuzz
