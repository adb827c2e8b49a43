#include "ptp/GetObjectCallback.h"

#include "codes/StillImageClass.h"
#include "foundation/SystemConsole.h"
#include "ptp/CopiedSizeProgress.h"
#include "ptp/FileHandle.h"

#include <fmt/format.h>

#include <utility>

namespace nivor {

GetObjectCallback::GetObjectCallback(std::shared_ptr<CopiedSizeProgress> data,
                                     std::shared_ptr<FileHandle> fileHandle)
    : data_(std::move(data))
    , fileHandle_(std::move(fileHandle))
{
}

bool GetObjectCallback::callbackProc(std::uint64_t receivedSize, std::uint64_t /*completeDataSize*/,
                                     const std::uint8_t* data, std::uint64_t dataSize)
{
    advanceProgress(receivedSize);

    const ByteView piece(data, dataSize);
    const std::shared_ptr<FileHandle> file = fileHandle();
    if (!isFirst_) {
        if (file) {
            file->seekToEndOfFile();
            file->writeData(piece);
        }
        return true;
    }

    isFirst_ = false;
    // The text names 12 although a piece of exactly 12 bytes, a header alone, is refused too.
    if (piece.size() <= containerHeaderSize) {
        writeToSystemConsole(fmt::format("Oh!!! receiveBuffer is length {} (< 12.)", piece.size()));
        return false;
    }
    if (file) {
        file->truncateFile(0);
        file->writeData(piece.subspan(containerHeaderSize));
    }
    return true;
}

void GetObjectCallback::advanceProgress(std::uint64_t receivedSize)
{
    if (const std::shared_ptr<CopiedSizeProgress> progress = data_.get())
        progress->setCopiedSize(progress->copiedSize() + (receivedSize - lastRecvdDataSize_));
    lastRecvdDataSize_ = receivedSize;
}

}  // namespace nivor
