/// What a sound camera answers to a command.
#pragma once

#include "foundation/Bytes.h"

#include <cstdint>

namespace nivor::test {

/// The transaction ID of the command under test: the connection's first has opened the session.
inline constexpr std::uint32_t testedTransaction = 2;

/// Two containers, or the response alone where the operation has no data phase.
struct Answer {
    ByteBuffer data;
    ByteBuffer response;

    [[nodiscard]] bool hasData() const { return !data.empty(); }

    /// What the data phase is for, without the container's header.
    [[nodiscard]] ByteView payload() const
    {
        return hasData() ? ByteView(data).subspan(12) : ByteView();
    }
};

}  // namespace nivor::test
