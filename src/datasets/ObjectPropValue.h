/// The value of an object property, as GetObjectPropValue answers it (MTP 1.1, D.2.37).
#pragma once

#include "foundation/AtomicProperty.h"
#include "foundation/Bytes.h"

#include <cstdint>
#include <optional>

namespace nivor {

/// The base of the property values: holds the number, while each subclass knows its data type.
/// `value` may be read and written from any thread.
class ObjectPropValue {
public:
    ObjectPropValue() = default;
    virtual ~ObjectPropValue();

    ObjectPropValue(const ObjectPropValue&) = delete;
    ObjectPropValue& operator=(const ObjectPropValue&) = delete;

    /// Takes the value from a whole data container, header included, and answers whether it could.
    /// Abstract: here it throws `InternalInconsistencyError`.
    virtual bool tryParse(ByteView receiveBuffer);

    /// Nothing until a value has been parsed or set.
    [[nodiscard]] std::optional<std::uint64_t> value() const { return value_.get(); }
    void setValue(std::optional<std::uint64_t> value) { value_.set(value); }

private:
    AtomicProperty<std::optional<std::uint64_t>> value_;
};

}  // namespace nivor
