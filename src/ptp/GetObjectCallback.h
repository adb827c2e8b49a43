/// The sink that streams one object from the camera into a file.
#pragma once

#include "foundation/AtomicProperty.h"
#include "ptp/PTPTransactionCallback.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace nivor {

class CopiedSizeProgress;
class FileHandle;

/// Serves one GetObject transaction. It writes to the file but never opens, closes or
/// synchronises it; a write that the disk refuses raises `FileError`.
class GetObjectCallback : public PTPTransactionCallback {
public:
    GetObjectCallback() = default;

    /// Either may be absent: without a progress object nothing is counted, without a file handle
    /// nothing is written.
    GetObjectCallback(std::shared_ptr<CopiedSizeProgress> data,
                      std::shared_ptr<FileHandle> fileHandle);

    bool callbackProc(std::uint64_t receivedSize, std::uint64_t completeDataSize,
                      const std::uint8_t* data, std::uint64_t dataSize) override;

    [[nodiscard]] bool isFirst() const { return isFirst_; }
    void setIsFirst(bool isFirst) { isFirst_ = isFirst; }

    [[nodiscard]] std::uint64_t lastRecvdDataSize() const { return lastRecvdDataSize_; }
    void setLastRecvdDataSize(std::uint64_t size) { lastRecvdDataSize_ = size; }

    [[nodiscard]] std::shared_ptr<CopiedSizeProgress> data() const { return data_.get(); }
    void setData(std::shared_ptr<CopiedSizeProgress> data) { data_.set(std::move(data)); }

    [[nodiscard]] std::shared_ptr<FileHandle> fileHandle() const { return fileHandle_.get(); }
    void setFileHandle(std::shared_ptr<FileHandle> handle) { fileHandle_.set(std::move(handle)); }

private:
    void advanceProgress(std::uint64_t receivedSize);

    std::atomic<bool> isFirst_{true};
    std::atomic<std::uint64_t> lastRecvdDataSize_{0};
    AtomicProperty<std::shared_ptr<CopiedSizeProgress>> data_;
    AtomicProperty<std::shared_ptr<FileHandle>> fileHandle_;
};

}  // namespace nivor
