/// What became of a delete run.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace nivor {

class ObjectInfoData;

/// One file of the run.
struct DeletedFile {
    std::shared_ptr<ObjectInfoData> object;
    bool isDeleted = false;  ///< the camera said that it is gone
    std::string failure{};   ///< why it is still there, in words, UTF-8; empty when it is gone
};

struct DeleteResult {
    std::vector<DeletedFile> files;  ///< in the order of the run; without those not begun

    /// The last file of the run failed. A failure before a success does not show here, only in
    /// `files`.
    bool isError = false;

    bool isStopped = false;         ///< the observer ended the run
    std::size_t filesNotBegun = 0;  ///< because of that

    [[nodiscard]] std::size_t deletedCount() const;
    [[nodiscard]] std::size_t failedCount() const { return files.size() - deletedCount(); }
};

}  // namespace nivor
