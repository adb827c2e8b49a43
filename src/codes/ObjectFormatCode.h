/// PTP object format codes (ISO 15740, 6.2; MTP 1.1, A).
#pragma once

#include <cstdint>

namespace nivor {

enum class ObjectFormatCode : std::uint16_t {
    AllFormats = 0x0000,
    Undefined = 0x3000,
    Association = 0x3001,
    Text = 0x3004,
    WAV = 0x3008,
    MP3 = 0x3009,
    AVI = 0x300A,
    MPEG = 0x300B,
    QuickTime = 0x300D,
    UndefinedImage = 0x3800,
    EXIFJPEG = 0x3801,
    BMP = 0x3804,
    GIF = 0x3807,
    JFIF = 0x3808,
    PNG = 0x380B,
    TIFF = 0x380D,
    MP4 = 0xB982,
};

/// The standard's name of `code`, or "unknown" for a value outside the table.
const char* toText(ObjectFormatCode code);

}  // namespace nivor
