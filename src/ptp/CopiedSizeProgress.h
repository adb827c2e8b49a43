/// The progress object of a transfer: a byte counter that the sink advances.
#pragma once

#include <cstdint>

namespace nivor {

/// Written by the receive thread and read by the thread that shows the progress; each access is
/// atomic by itself.
class CopiedSizeProgress {
public:
    CopiedSizeProgress() = default;
    virtual ~CopiedSizeProgress() = default;

    CopiedSizeProgress(const CopiedSizeProgress&) = delete;
    CopiedSizeProgress& operator=(const CopiedSizeProgress&) = delete;

    /// Bytes received so far in this run, all files together, container headers included.
    [[nodiscard]] virtual std::uint64_t copiedSize() const = 0;
    virtual void setCopiedSize(std::uint64_t copiedSize) = 0;
};

}  // namespace nivor
