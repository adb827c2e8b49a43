/// What a responder has to say to a command, before it is put into containers.
#pragma once

#include "codes/ResponseCode.h"
#include "foundation/Bytes.h"
#include "simulator/InTransfer.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace nivor {

struct PtpAnswer {
    /// A data phase: a dataset held in memory, or `bodySize` bytes made on the fly.
    struct Data {
        ByteBuffer dataset{};
        InTransfer::Body body{};
        std::uint64_t bodySize = 0;
    };

    std::optional<Data> data{};
    ResponseCode response = ResponseCode::OK;
    std::vector<std::uint32_t> parameters{};  ///< of the response

    static PtpAnswer ok() { return {}; }
    static PtpAnswer refuse(ResponseCode code) { return only(code); }

    /// A response without data.
    static PtpAnswer only(ResponseCode code) { return {.response = code}; }
    static PtpAnswer with(ByteBuffer dataset)
    {
        return {.data = Data{.dataset = std::move(dataset)}};
    }
};

}  // namespace nivor
