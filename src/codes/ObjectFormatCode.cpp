#include "codes/ObjectFormatCode.h"

namespace nivor {

const char* toText(ObjectFormatCode code)
{
    switch (code) {
    case ObjectFormatCode::AllFormats:
        return "All formats";
    case ObjectFormatCode::Undefined:
        return "Undefined";
    case ObjectFormatCode::Association:
        return "Association";
    case ObjectFormatCode::Text:
        return "Text";
    case ObjectFormatCode::WAV:
        return "WAV";
    case ObjectFormatCode::MP3:
        return "MP3";
    case ObjectFormatCode::AVI:
        return "AVI";
    case ObjectFormatCode::MPEG:
        return "MPEG";
    case ObjectFormatCode::QuickTime:
        return "QuickTime";
    case ObjectFormatCode::UndefinedImage:
        return "Undefined image";
    case ObjectFormatCode::EXIFJPEG:
        return "EXIF/JPEG";
    case ObjectFormatCode::BMP:
        return "BMP";
    case ObjectFormatCode::GIF:
        return "GIF";
    case ObjectFormatCode::JFIF:
        return "JFIF";
    case ObjectFormatCode::PNG:
        return "PNG";
    case ObjectFormatCode::TIFF:
        return "TIFF";
    case ObjectFormatCode::MP4:
        return "MP4";
    }
    return "unknown";
}

}  // namespace nivor
