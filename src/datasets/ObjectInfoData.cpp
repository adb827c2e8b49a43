#include "datasets/ObjectInfoData.h"

#include "codes/ObjectFormatCode.h"
#include "codes/StillImageClass.h"
#include "datasets/DateFormatter.h"
#include "datasets/TrimmingNullCharacters.h"
#include "foundation/ByteReader.h"

#include <QStringView>

#include <bit>

namespace nivor {

namespace {

/// The bytes of `buffer` from `offset` on, or nothing when it ends before that.
std::optional<ByteView> from(ByteView buffer, std::size_t offset)
{
    if (offset > buffer.size())
        return std::nullopt;
    return buffer.subspan(offset);
}

/// The bytes that a decoded text takes up in the dataset: its count, then its units, which
/// still include the terminator. A text of undecodable units counts as empty.
std::size_t encodedSize(const QString& text)
{
    return 1 + 2 * static_cast<std::size_t>(text.size());
}

constexpr std::uint16_t byteSwapped(std::uint16_t unit)
{
    return static_cast<std::uint16_t>((unit << 8) | (unit >> 8));
}

}  // namespace

ObjectInfoData::ObjectInfoData() = default;
ObjectInfoData::~ObjectInfoData() = default;

const DateFormatter& ObjectInfoData::sharedDateFormatter()
{
    // Never destroyed, so that a thread may still parse while the process ends.
    static const DateFormatter* const formatter = new DateFormatter;
    return *formatter;
}

bool ObjectInfoData::isLittleEndian()
{
    return std::endian::native == std::endian::little;
}

bool ObjectInfoData::convertByteArrayToNSString(std::optional<ByteView> bytes, QString& convertData)
{
    if (!bytes)
        return false;

    ByteReader reader(*bytes);
    const std::size_t count = reader.u8();
    ByteReader units(reader.bytes(2 * count));
    if (!reader.ok())
        return false;

    QString text(static_cast<qsizetype>(count), Qt::Uninitialized);
    for (QChar& character : text) {
        const std::uint16_t unit = units.u16();
        character = QChar(isLittleEndian() ? unit : byteSwapped(unit));
    }
    // Unlike the record, QString itself would put up with half a surrogate pair.
    convertData = QStringView(text).isValidUtf16() ? text : QString();
    return true;
}

bool ObjectInfoData::convertByteArrayToDateString(std::optional<ByteView> bytes,
                                                  QString& convertData)
{
    return convertByteArrayToNSString(bytes, convertData);
}

bool ObjectInfoData::convertByteArrayToNSArray(std::optional<ByteView> bytes,
                                               std::vector<std::uint16_t>& convertData)
{
    if (!bytes)
        return false;

    ByteReader reader(*bytes);
    const auto signedCount = static_cast<std::int32_t>(reader.u32());
    const std::size_t count = signedCount > 0 ? static_cast<std::size_t>(signedCount) : 0;
    if (!reader.ok() || count > reader.remaining() / sizeof(std::uint16_t))
        return false;

    std::vector<std::uint16_t> elements(count);
    for (std::uint16_t& element : elements)
        element = reader.u16();
    convertData = std::move(elements);
    return true;
}

bool ObjectInfoData::tryParse(ByteView receiveBuffer, ObjectInfoData& objectInfoData)
{
    ByteReader reader(receiveBuffer, containerHeaderSize);
    const std::uint32_t storageID = reader.u32();
    const std::uint16_t objectFormat = reader.u16();
    reader.skip(2);  // ProtectionStatus
    const std::uint32_t objectCompressedSize = reader.u32();
    const std::uint16_t thumbFormat = reader.u16();
    const std::uint32_t thumbCompressedSize = reader.u32();
    reader.skip(4 + 4);      // ThumbPixWidth, ThumbPixHeight
    reader.skip(4 + 4 + 4);  // ImagePixWidth, ImagePixHeight, ImageBitDepth
    const std::uint32_t parentObject = reader.u32();
    reader.skip(2 + 4 + 4);  // AssociationType, AssociationDesc, SequenceNumber
    if (!reader.ok())
        return false;

    objectInfoData.setStorageID(storageID);
    objectInfoData.setObjectFormat(objectFormat);
    objectInfoData.setObjectCompressedSize(objectCompressedSize);
    objectInfoData.setThumbFormat(thumbFormat);
    objectInfoData.setThumbCompressedSize(thumbCompressedSize);
    objectInfoData.setParentObject(QString::number(parentObject));

    // Where a string begins follows from the texts before it as decoded, not from their counts.
    std::size_t offset = reader.offset();
    QString fileName;
    if (!convertByteArrayToNSString(from(receiveBuffer, offset), fileName))
        return false;
    objectInfoData.setFileName(fileName);

    offset += encodedSize(fileName);
    QString dateCreated;
    if (!convertByteArrayToDateString(from(receiveBuffer, offset), dateCreated))
        return false;
    objectInfoData.setDateCreated(dateCreated);

    offset += encodedSize(dateCreated);
    QString dateModified;
    if (!convertByteArrayToDateString(from(receiveBuffer, offset), dateModified))
        return false;
    objectInfoData.setDateModified(dateModified);

    // No text, no match: the date is invalid for an empty text as well.
    objectInfoData.setModifiedDate(
        sharedDateFormatter().dateFromString(NVX_stringByTrimmingNullCharacters(dateModified)));
    return true;
}

bool ObjectInfoData::isAssociation() const
{
    return objectFormat() == static_cast<std::uint16_t>(ObjectFormatCode::Association);
}

void ObjectInfoData::setThumbnail(std::shared_ptr<const Thumbnail> thumbnail)
{
    thumbnail_.set(std::move(thumbnail));
}

}  // namespace nivor
