/// How far a copy run is.
#pragma once

#include "foundation/AtomicProperty.h"
#include "ptp/CopiedSizeProgress.h"

#include <QString>
#include <QUrl>

#include <atomic>
#include <cstdint>
#include <utility>

namespace nivor {

/// Every property is atomic by itself. `copiedSize` is advanced by the transfer's thread; all
/// others are set by the thread that runs the copy.
class CopyProgress : public CopiedSizeProgress {
public:
    /// Bytes received so far, all files together; more than `totalSize` in the end, since the
    /// container headers count.
    [[nodiscard]] std::uint64_t copiedSize() const override { return copiedSize_; }
    void setCopiedSize(std::uint64_t copiedSize) override { copiedSize_ = copiedSize; }

    /// Bytes that the camera has announced, all items together.
    [[nodiscard]] std::uint64_t totalSize() const { return totalSize_; }
    void setTotalSize(std::uint64_t totalSize) { totalSize_ = totalSize; }

    /// The camera's name of the file now being copied, without terminator; empty before the first.
    [[nodiscard]] QString sourceFile() const { return sourceFile_.get(); }
    void setSourceFile(QString sourceFile) { sourceFile_.set(std::move(sourceFile)); }

    /// The folder that is copied to.
    [[nodiscard]] QUrl destinationURL() const { return destinationURL_.get(); }
    void setDestinationURL(QUrl url) { destinationURL_.set(std::move(url)); }

    /// Which file this is, from 1; 0 before the first.
    [[nodiscard]] std::uint64_t numberOfCopiedItems() const { return numberOfCopiedItems_; }
    void setNumberOfCopiedItems(std::uint64_t number) { numberOfCopiedItems_ = number; }

    /// Files of this run; folders don't count.
    [[nodiscard]] std::uint64_t numberOfTotalItems() const { return numberOfTotalItems_; }
    void setNumberOfTotalItems(std::uint64_t number) { numberOfTotalItems_ = number; }

private:
    std::atomic<std::uint64_t> copiedSize_{0};
    std::atomic<std::uint64_t> totalSize_{0};
    std::atomic<std::uint64_t> numberOfCopiedItems_{0};
    std::atomic<std::uint64_t> numberOfTotalItems_{0};
    AtomicProperty<QString> sourceFile_;
    AtomicProperty<QUrl> destinationURL_;
};

}  // namespace nivor
