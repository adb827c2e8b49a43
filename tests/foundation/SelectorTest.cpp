#include "foundation/Selector.h"

#include <gtest/gtest.h>

namespace nivor::test {
namespace {

class Example {
public:
    static std::string_view getObjectInfo()
    {
        constexpr Selector selector{"getObjectInfo:objectInfoData:"};
        return selector.text();
    }

    static std::string_view disconnect()
    {
        constexpr Selector selector{"disconnect"};
        return selector.text();
    }

    static std::string_view handedIntoALambda()
    {
        constexpr Selector selector{"handedIntoALambda:"};
        return [&selector] { return selector.text(); }();
    }
};

TEST(Selector, KeepsItsWholeText)
{
    EXPECT_EQ(Example::getObjectInfo(), "getObjectInfo:objectInfoData:");
}

TEST(Selector, MayHaveNoArguments)
{
    EXPECT_EQ(Example::disconnect(), "disconnect");
}

TEST(Selector, MayBeHandedIntoALambda)
{
    EXPECT_EQ(Example::handedIntoALambda(), "handedIntoALambda:");
}

}  // namespace
}  // namespace nivor::test
