/// The sinks that the engine's target hands to the engine.
#pragma once

#include "Require.h"
#include "ptp/CopiedSizeProgress.h"
#include "ptp/PTPTransactionCallback.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace nivor::fuzz {

/// Checks what it is told, and refuses or raises after some pieces.
class CheckingSink : public PTPTransactionCallback {
public:
    CheckingSink(std::size_t piecesTaken, bool raises)
        : piecesLeft_(piecesTaken)
        , raises_(raises)
    {
    }

    bool callbackProc(std::uint64_t receivedSize, std::uint64_t /*completeDataSize*/,
                      const std::uint8_t* data, std::uint64_t dataSize) override
    {
        require(!isOver_, "a sink that has refused is left alone");
        for (std::uint64_t i = 0; i < dataSize; ++i)
            checksum_ += data[i];
        size_ += dataSize;
        require(receivedSize == size_, "the size so far is that of the pieces so far");
        if (piecesLeft_ > 0) {
            --piecesLeft_;
            return true;
        }
        isOver_ = true;
        if (raises_)
            throw std::runtime_error("no more");
        return false;
    }

    [[nodiscard]] std::uint64_t size() const { return size_; }
    [[nodiscard]] bool isOver() const { return isOver_; }

private:
    std::size_t piecesLeft_;
    bool raises_;
    bool isOver_ = false;
    std::uint64_t size_ = 0;
    std::uint64_t checksum_ = 0;  // reads every byte, so that the sanitizers see them read
};

class Progress : public CopiedSizeProgress {
public:
    [[nodiscard]] std::uint64_t copiedSize() const override { return size_; }
    void setCopiedSize(std::uint64_t copiedSize) override { size_ = copiedSize; }

private:
    std::atomic<std::uint64_t> size_{0};
};

}  // namespace nivor::fuzz
