/// The ObjectSize property (0xDC04), a 64-bit number of bytes (MTP 1.1, B.2.4).
#pragma once

#include "datasets/ObjectPropValue.h"

namespace nivor {

class ObjectPropValueObjectSize : public ObjectPropValue {
public:
    /// Sets `value` to the UINT64 behind the container header; always answers true.
    /// Throws `RangeError`, and leaves `value` as it is, when the container has less than 20 bytes.
    bool tryParse(ByteView receiveBuffer) override;
};

}  // namespace nivor
