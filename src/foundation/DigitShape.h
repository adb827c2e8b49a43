/// Reads texts that have digits at fixed places, such as dates.
#pragma once

#include <algorithm>
#include <string_view>

namespace nivor {

/// Whether `text` has one of the digits 0 to 9 wherever `shape` has a "0", and everywhere else just
/// the character that `shape` has. Their lengths have to be equal.
constexpr bool hasShape(std::u16string_view text, std::u16string_view shape)
{
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(),
                      [](char16_t unit, char16_t expected) {
                          return expected == u'0' ? unit >= u'0' && unit <= u'9' : unit == expected;
                      });
}

/// The decimal number that `digits` is: from one to nine digits and nothing else.
constexpr int numberOf(std::u16string_view digits)
{
    int number = 0;
    for (const char16_t digit : digits)
        number = number * 10 + (digit - u'0');
    return number;
}

}  // namespace nivor
