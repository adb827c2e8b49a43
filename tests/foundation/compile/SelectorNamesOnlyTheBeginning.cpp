// Does not compile: the selector's first keyword is only how the method's name begins.
#include "foundation/Selector.h"

using nivor::Selector;

class Example {
public:
    static std::string_view getObjectInfo()
    {
        constexpr Selector selector{"getObject:objectInfoData:"};
        return selector.text();
    }
};
