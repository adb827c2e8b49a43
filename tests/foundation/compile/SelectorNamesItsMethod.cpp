// Compiles: every selector's first keyword is the name of the method it stands in.
#include "foundation/Selector.h"

using nivor::Selector;

class Example {
public:
    static std::string_view connect()
    {
        constexpr Selector selector{"connect:"};
        return selector.text();
    }

    static std::string_view getObjectInfo(int /*handle*/, int& /*data*/)
    {
        constexpr Selector selector{"getObjectInfo:objectInfoData:"};
        return selector.text();
    }

    static std::string_view disconnect()
    {
        constexpr Selector selector{"disconnect"};
        return selector.text();
    }
};
