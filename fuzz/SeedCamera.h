/// A simulated camera that answers one command at a time, for seeds.
#pragma once

#include "codes/OperationCode.h"
#include "foundation/Bytes.h"
#include "simulator/MemoryCard.h"
#include "simulator/PtpResponder.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace nivor::fuzz {

/// Its card has a folder, pictures and a film, with names and thumbnails of several kinds. A
/// session is open.
class SeedCamera {
public:
    SeedCamera();

    /// The command as it is written to the bulk-out pipe.
    static ByteBuffer command(OperationCode operation,
                              const std::vector<std::uint32_t>& parameters = {});

    /// The transfers that answer it: the data, if there is any, and the response.
    std::vector<ByteBuffer> answer(OperationCode operation,
                                   const std::vector<std::uint32_t>& parameters = {});

    [[nodiscard]] std::vector<std::uint32_t> handles() const { return card_->handles(); }

private:
    std::shared_ptr<MemoryCard> card_;
    PtpResponder responder_;
};

}  // namespace nivor::fuzz
