#include "datasets/ObjectPropValueObjectSize.h"

#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/Errors.h"

namespace nivor {

bool ObjectPropValueObjectSize::tryParse(ByteView receiveBuffer)
{
    ByteReader reader(receiveBuffer, containerHeaderSize);
    const std::uint64_t objectSize = reader.u64();
    if (!reader.ok())
        throw RangeError("the container ends within the object's size");
    setValue(objectSize);
    return true;
}

}  // namespace nivor
