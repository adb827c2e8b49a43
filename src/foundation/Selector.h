/// The name under which an operation stands in the log, checked against its method while compiling.
#pragma once

#include <string_view>

namespace nivor {

/// A selector text such as "getObjectInfo:objectInfoData:".
///
/// Write it once, as the first line of the method it names:
///
///     constexpr Selector selector{"getObjectInfo:objectInfoData:"};
///
/// The text's first keyword must be the name of the enclosing method; anything else does not
/// compile. Inside a lambda the enclosing method is the lambda's own, so hand the selector in.
class Selector {
public:
    consteval Selector(const char* text, std::string_view method = __builtin_FUNCTION())
        : text_(text)
    {
        if (text_.substr(0, text_.find(':')) != method)
            selectorDoesNotNameItsMethod();
    }

    [[nodiscard]] constexpr std::string_view text() const { return text_; }

private:
    // Never defined and not constexpr: a call to it is what stops the compiler.
    static void selectorDoesNotNameItsMethod();

    std::string_view text_;
};

}  // namespace nivor
