#include "datasets/ObjectPropValue.h"

#include "foundation/Errors.h"
#include "foundation/Selector.h"

namespace nivor {

ObjectPropValue::~ObjectPropValue() = default;

bool ObjectPropValue::tryParse(ByteView /*receiveBuffer*/)
{
    constexpr Selector selector{"tryParse:"};
    throw InternalInconsistencyError::mustOverride(selector.text());
}

}  // namespace nivor
