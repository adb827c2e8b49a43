/// One object on the camera: what is kept of its ObjectInfo dataset (ISO 15740; MTP 1.1, 5.3.1).
#pragma once

#include "foundation/AtomicProperty.h"
#include "foundation/Bytes.h"

#include <QDateTime>
#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nivor {

class DateFormatter;
class Thumbnail;

/// A node of the camera's content tree, and at the same time a row of the list.
///
/// The children of a node are those whose `parentObject` equals its `myHandle`. A new record has 0
/// in every number and nothing (a null text, an invalid date, no image) everywhere else. Every
/// property is atomic: one thread may fill a record while others read it. Held by
/// `std::shared_ptr`.
class ObjectInfoData {
public:
    ObjectInfoData();
    ~ObjectInfoData();

    ObjectInfoData(const ObjectInfoData&) = delete;
    ObjectInfoData& operator=(const ObjectInfoData&) = delete;

    /// The formatter that modification dates are read with, created on first use. Any thread.
    static const DateFormatter& sharedDateFormatter();

    /// Whether the host stores integers little-endian, as every supported one does. Decides the
    /// byte order in which texts are decoded.
    static bool isLittleEndian();

    /// Decodes the PTP string (MTP 1.1, 3.2.3) at the start of `bytes`: a count of UTF-16 units,
    /// then the units. The text keeps its terminator and anything behind it. Units that are not
    /// valid UTF-16 decode to nothing, a null text.
    /// False, with `convertData` untouched, when there are no bytes or the string runs past them.
    static bool convertByteArrayToNSString(std::optional<ByteView> bytes, QString& convertData);

    /// Decodes the text of a date, in the same way; it does not make a date of it.
    static bool convertByteArrayToDateString(std::optional<ByteView> bytes, QString& convertData);

    /// Decodes the array (MTP 1.1, 3.2.2) of 16-bit elements at the start of `bytes`. Its count
    /// is taken as signed; 0 or less gives an empty list. False, with `convertData` untouched, when
    /// there are no bytes or the array runs past them.
    static bool convertByteArrayToNSArray(std::optional<ByteView> bytes,
                                          std::vector<std::uint16_t>& convertData);

    /// Fills a record from the whole data container of a GetObjectInfo, header included. Sets
    /// everything but `myHandle` and `thumbnail`.
    /// False when a field or a string would run past the end; the record may be partly filled then.
    static bool tryParse(ByteView receiveBuffer, ObjectInfoData& objectInfoData);

    [[nodiscard]] std::uint32_t storageID() const { return storageID_; }
    void setStorageID(std::uint32_t storageID) { storageID_ = storageID; }

    /// A PTP object format code (`ObjectFormatCode`).
    [[nodiscard]] std::uint16_t objectFormat() const { return objectFormat_; }
    void setObjectFormat(std::uint16_t objectFormat) { objectFormat_ = objectFormat; }

    /// Whether the object is a folder rather than a file.
    [[nodiscard]] bool isAssociation() const;

    /// Bytes. 0xFFFFFFFF from the dataset says that the ObjectSize property knows the true size.
    [[nodiscard]] std::uint64_t objectCompressedSize() const { return objectCompressedSize_; }
    void setObjectCompressedSize(std::uint64_t size) { objectCompressedSize_ = size; }

    /// A PTP object format code.
    [[nodiscard]] std::uint16_t thumbFormat() const { return thumbFormat_; }
    void setThumbFormat(std::uint16_t thumbFormat) { thumbFormat_ = thumbFormat; }

    /// Bytes; 0 when the object has no thumbnail.
    [[nodiscard]] std::uint32_t thumbCompressedSize() const { return thumbCompressedSize_; }
    void setThumbCompressedSize(std::uint32_t size) { thumbCompressedSize_ = size; }

    /// The handle of the folder that the object lies in, in decimal; "0" at the top of a storage.
    [[nodiscard]] QString parentObject() const { return parentObject_.get(); }
    void setParentObject(QString parentObject) { parentObject_.set(std::move(parentObject)); }

    /// As decoded, with its terminator.
    [[nodiscard]] QString fileName() const { return fileName_.get(); }
    void setFileName(QString fileName) { fileName_.set(std::move(fileName)); }

    /// The text of the capture date as decoded, with its terminator.
    [[nodiscard]] QString dateCreated() const { return dateCreated_.get(); }
    void setDateCreated(QString dateCreated) { dateCreated_.set(std::move(dateCreated)); }

    /// The text of the modification date as decoded, with its terminator.
    [[nodiscard]] QString dateModified() const { return dateModified_.get(); }
    void setDateModified(QString dateModified) { dateModified_.set(std::move(dateModified)); }

    /// What `dateModified` says; invalid when it says nothing or can't be read.
    [[nodiscard]] QDateTime modifiedDate() const { return modifiedDate_.get(); }
    void setModifiedDate(QDateTime modifiedDate) { modifiedDate_.set(std::move(modifiedDate)); }

    /// The object's own handle in decimal.
    [[nodiscard]] QString myHandle() const { return myHandle_.get(); }
    void setMyHandle(QString myHandle) { myHandle_.set(std::move(myHandle)); }

    /// The camera's small picture of the object, or null.
    [[nodiscard]] std::shared_ptr<const Thumbnail> thumbnail() const { return thumbnail_.get(); }
    void setThumbnail(std::shared_ptr<const Thumbnail> thumbnail);

private:
    std::atomic<std::uint64_t> objectCompressedSize_{0};
    std::atomic<std::uint32_t> storageID_{0};
    std::atomic<std::uint32_t> thumbCompressedSize_{0};
    std::atomic<std::uint16_t> objectFormat_{0};
    std::atomic<std::uint16_t> thumbFormat_{0};
    AtomicProperty<QString> parentObject_;
    AtomicProperty<QString> fileName_;
    AtomicProperty<QString> dateCreated_;
    AtomicProperty<QString> dateModified_;
    AtomicProperty<QDateTime> modifiedDate_;
    AtomicProperty<QString> myHandle_;
    AtomicProperty<std::shared_ptr<const Thumbnail>> thumbnail_;
};

}  // namespace nivor
