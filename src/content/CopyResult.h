/// What became of a copy run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace nivor {

class DestinationFolder;
class ObjectInfoData;

/// One file of the run.
struct CopiedFile {
    std::shared_ptr<ObjectInfoData> object;

    /// The local file; it is there after a failure as well if it could be created. Empty when
    /// none was tried.
    std::filesystem::path path{};

    /// Every byte that the camera announced is on the disk, and nothing failed on the way.
    bool isCopied = false;

    std::string failure{};  ///< why it is not copied, in words, UTF-8; empty when it is
};

struct CopyResult {
    std::shared_ptr<const DestinationFolder> folder{};  ///< where the files are

    std::vector<CopiedFile> files;  ///< in the order of the run; without those not begun

    /// The last file of the run failed. A failure before a success does not show here, only in
    /// `files`.
    bool isError = false;

    bool isStopped = false;         ///< a stop was requested before the run was over
    bool isCancelSent = false;      ///< a file was under way then, and the camera was told
    bool isStopConfirmed = false;   ///< the camera confirmed that it ended the transfer
    std::size_t filesNotBegun = 0;  ///< because of the stop

    [[nodiscard]] std::size_t copiedCount() const;
    [[nodiscard]] std::size_t failedCount() const { return files.size() - copiedCount(); }
};

}  // namespace nivor
