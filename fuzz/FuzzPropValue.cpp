#include "Targets.h"

#include "Require.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "foundation/ByteReader.h"
#include "foundation/Errors.h"

namespace nivor::fuzz {

void fuzzPropValue(ByteView input)
{
    ObjectPropValueObjectSize property;
    bool raised = false;
    try {
        require(property.tryParse(input), "a size that is whole is taken");
    } catch (const RangeError&) {
        raised = true;
    }

    ByteReader reader(input, 12);
    const std::uint64_t sent = reader.u64();
    require(raised == !reader.ok(), "an error is raised where the size is cut off, only there");
    require(property.value().has_value() == !raised, "a value is there when it was sent");
    require(property.value().value_or(sent) == sent, "the size is that of the wire");
}

}  // namespace nivor::fuzz
