#include "content/ComparingCallback.h"

#include "codes/StillImageClass.h"
#include "content/DestinationFolder.h"
#include "ptp/CopiedSizeProgress.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace nivor {
namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;

}  // namespace

ComparingCallback::ComparingCallback(std::shared_ptr<const DestinationFolder> folder,
                                     std::filesystem::path path,
                                     std::shared_ptr<CopiedSizeProgress> progress)
    : folder_(std::move(folder))
    , path_(std::move(path))
    , block_(blockSize)
    , progress_(std::move(progress))
{
}

bool ComparingCallback::callbackProc(std::uint64_t receivedSize, std::uint64_t /*completeDataSize*/,
                                     const std::uint8_t* data, std::uint64_t dataSize)
{
    if (progress_)
        progress_->setCopiedSize(progress_->copiedSize() + (receivedSize - receivedSize_));
    const bool isFirst = receivedSize_ == 0;
    receivedSize_ = receivedSize;

    const ByteView piece(data, dataSize);
    if (!isFirst)
        return compare(piece);
    if (piece.size() <= containerHeaderSize)
        return false;
    requireOpen();
    return compare(piece.subspan(containerHeaderSize));
}

void ComparingCallback::finish()
{
    requireOpen();
    if (!difference_ && static_cast<std::uint64_t>(file_.size()) != comparedSize_)
        difference_ = comparedSize_;
}

bool ComparingCallback::compare(ByteView bytes)
{
    while (!bytes.empty()) {
        const auto wanted = std::min(bytes.size(), block_.size());
        const qint64 size = file_.read(block_.data(), static_cast<qint64>(wanted));
        if (size < 0)
            fail();
        const ByteView theirs = bytes.first(static_cast<std::size_t>(size));
        const std::size_t same = sameCount(theirs);
        comparedSize_ += same;
        if (same < theirs.size() || size == 0) {
            difference_ = comparedSize_;
            return false;
        }
        bytes = bytes.subspan(theirs.size());
    }
    return true;
}

/// How many of these bytes stand at the beginning of the block as well.
std::size_t ComparingCallback::sameCount(ByteView theirs) const
{
    if (std::memcmp(theirs.data(), block_.data(), theirs.size()) == 0)
        return theirs.size();
    const auto difference =
        std::mismatch(theirs.begin(), theirs.end(), block_.begin(),
                      [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
    return static_cast<std::size_t>(difference.first - theirs.begin());
}

void ComparingCallback::requireOpen()
{
    if (file_.isOpen())
        return;
    const int descriptor = folder_->openForReading(path_.filename().string());
    if (!file_.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                    QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        fail();
    }
}

void ComparingCallback::fail() const
{
    throw std::runtime_error("Could not read " + path_.string() + ": "
                             + file_.errorString().toStdString());
}

}  // namespace nivor
