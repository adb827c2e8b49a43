/// The streaming sink of a data phase.
#pragma once

#include <cstdint>

namespace nivor {

/// Receives a data container piece by piece, on the engine's receive thread. Abstract: its one
/// operation raises `InternalInconsistencyError` until a subclass overrides it.
class PTPTransactionCallback {
public:
    PTPTransactionCallback() = default;
    virtual ~PTPTransactionCallback() = default;

    PTPTransactionCallback(const PTPTransactionCallback&) = delete;
    PTPTransactionCallback& operator=(const PTPTransactionCallback&) = delete;

    /// Takes one piece.
    ///
    /// `receivedSize`: bytes of the container received so far, header and this piece included.
    /// `completeDataSize`: bytes of the whole container.
    /// `data`, `dataSize`: this piece; the first one begins with the 12-byte header. Valid during
    /// the call only.
    ///
    /// Answers true to go on; false fails the transaction. An error raised here fails it too and
    /// is recorded in the log.
    virtual bool callbackProc(std::uint64_t receivedSize, std::uint64_t completeDataSize,
                              const std::uint8_t* data, std::uint64_t dataSize);
};

}  // namespace nivor
