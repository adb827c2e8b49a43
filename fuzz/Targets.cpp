#include "Targets.h"

#include <array>

namespace nivor::fuzz {

std::span<const Target> targets()
{
    static constexpr std::array<Target, 9> all{{
        {"FuzzContainer", &fuzzContainer},
        {"FuzzObjectInfo", &fuzzObjectInfo},
        {"FuzzPropValue", &fuzzPropValue},
        {"FuzzStrings", &fuzzStrings},
        {"FuzzThumbnail", &fuzzThumbnail},
        {"FuzzEngine", &fuzzEngine},
        {"FuzzFileName", &fuzzFileName},
        {"FuzzLog", &fuzzLog},
        {"FuzzSimulator", &fuzzSimulator},
    }};
    return all;
}

}  // namespace nivor::fuzz
