#include "simulator/FileFormat.h"

#include <algorithm>
#include <array>
#include <string>

namespace nivor {

namespace {

struct Suffix {
    std::u16string_view text;
    ObjectFormatCode format;
};

constexpr std::array suffixes{
    Suffix{u"jpg", ObjectFormatCode::EXIFJPEG}, Suffix{u"jpeg", ObjectFormatCode::EXIFJPEG},
    Suffix{u"png", ObjectFormatCode::PNG},      Suffix{u"gif", ObjectFormatCode::GIF},
    Suffix{u"bmp", ObjectFormatCode::BMP},      Suffix{u"tif", ObjectFormatCode::TIFF},
    Suffix{u"tiff", ObjectFormatCode::TIFF},    Suffix{u"mov", ObjectFormatCode::QuickTime},
    Suffix{u"mp4", ObjectFormatCode::MP4},      Suffix{u"avi", ObjectFormatCode::AVI},
    Suffix{u"mpg", ObjectFormatCode::MPEG},     Suffix{u"wav", ObjectFormatCode::WAV},
    Suffix{u"mp3", ObjectFormatCode::MP3},      Suffix{u"txt", ObjectFormatCode::Text},
};

char16_t lower(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

}  // namespace

ObjectFormatCode formatOfFile(std::u16string_view name)
{
    const std::size_t dot = name.rfind(u'.');
    if (dot == std::u16string_view::npos)
        return ObjectFormatCode::Undefined;
    std::u16string suffix(name.substr(dot + 1));
    std::transform(suffix.begin(), suffix.end(), suffix.begin(), lower);
    const auto* const found =
        std::find_if(suffixes.begin(), suffixes.end(),
                     [&](const Suffix& known) { return known.text == suffix; });
    return found == suffixes.end() ? ObjectFormatCode::Undefined : found->format;
}

}  // namespace nivor
