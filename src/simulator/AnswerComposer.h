/// Puts an answer into containers and transfers, with the faults that it is to have.
#pragma once

#include "simulator/AnswerShape.h"
#include "simulator/InTransfer.h"
#include "simulator/PtpAnswer.h"
#include "simulator/PtpCommand.h"

#include <cstddef>
#include <vector>

namespace nivor {

class AnswerComposer {
public:
    explicit AnswerComposer(const PtpCommand& command)
        : command_(command)
    {
    }

    /// The transfers of the answer in the order they are sent; none when the camera is silent.
    [[nodiscard]] std::vector<InTransfer> compose(PtpAnswer answer, const AnswerShape& shape) const;

    /// A response container, without fault.
    [[nodiscard]] ByteBuffer response(ResponseCode code) const;

private:
    [[nodiscard]] InTransfer dataTransfer(const PtpAnswer::Data& data,
                                          const AnswerShape& shape) const;
    [[nodiscard]] ByteBuffer responseContainer(const PtpAnswer& answer,
                                               const AnswerShape& shape) const;

    const PtpCommand& command_;
};

}  // namespace nivor
