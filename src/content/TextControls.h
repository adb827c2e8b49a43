/// The characters that make a line of text look like another one.
#pragma once

namespace nivor {

/// The marks that turn the direction of what follows (Unicode 15, property Bidi_Control). With one,
/// "photo_gpj.exe" is shown as "photo_exe.jpg".
constexpr bool changesDirection(char32_t character)
{
    return character == 0x061C || character == 0x200E || character == 0x200F
        || (character >= 0x202A && character <= 0x202E)
        || (character >= 0x2066 && character <= 0x2069);
}

/// The line and the paragraph separator.
constexpr bool separatesLines(char32_t character)
{
    return character == 0x2028 || character == 0x2029;
}

}  // namespace nivor
