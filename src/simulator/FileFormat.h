/// The object format that a file's name stands for.
#pragma once

#include "codes/ObjectFormatCode.h"

#include <string_view>

namespace nivor {

/// Goes by the name's suffix, upper or lower case; `Undefined` for one that it does not know.
ObjectFormatCode formatOfFile(std::u16string_view name);

}  // namespace nivor
