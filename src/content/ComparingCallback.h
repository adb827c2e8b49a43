/// The sink that holds one object from the camera against a local file.
#pragma once

#include "foundation/Bytes.h"
#include "ptp/PTPTransactionCallback.h"

#include <QFile>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace nivor {

class CopiedSizeProgress;
class DestinationFolder;

/// Serves one GetObject transaction, and refuses it at the first byte that differs. A file that
/// can't be read raises an error that says so.
class ComparingCallback final : public PTPTransactionCallback {
public:
    /// The file is the one in `folder` that has the name of `path`. `progress` may be absent.
    ComparingCallback(std::shared_ptr<const DestinationFolder> folder, std::filesystem::path path,
                      std::shared_ptr<CopiedSizeProgress> progress);

    bool callbackProc(std::uint64_t receivedSize, std::uint64_t completeDataSize,
                      const std::uint8_t* data, std::uint64_t dataSize) override;

    /// The offset of the first byte that differs, or at which one of both has ended; none while
    /// all is the same. The file's end is only compared by `finish`.
    [[nodiscard]] std::optional<std::uint64_t> difference() const { return difference_; }

    /// To be called after the last piece: a file that goes on is a difference.
    void finish();

private:
    bool compare(ByteView bytes);
    [[nodiscard]] std::size_t sameCount(ByteView theirs) const;
    void requireOpen();
    [[noreturn]] void fail() const;

    const std::shared_ptr<const DestinationFolder> folder_;
    const std::filesystem::path path_;
    QFile file_;
    std::vector<char> block_;
    const std::shared_ptr<CopiedSizeProgress> progress_;
    std::uint64_t receivedSize_ = 0;
    std::uint64_t comparedSize_ = 0;
    std::optional<std::uint64_t> difference_;
};

}  // namespace nivor
