// Does not compile: the selector was copied from another method.
#include "foundation/Selector.h"

using nivor::Selector;

class Example {
public:
    static std::string_view getThumb()
    {
        constexpr Selector selector{"getObject:objectSize:"};
        return selector.text();
    }
};
