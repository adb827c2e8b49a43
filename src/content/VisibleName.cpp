#include "content/VisibleName.h"

#include "content/TextControls.h"

#include <QList>

#include <algorithm>

namespace nivor {
namespace {

constexpr char16_t firstControlPicture = 0x2400;
constexpr char16_t pictureOfDelete = 0x2421;

}  // namespace

QString visibleName(const QString& name)
{
    // Nearly every name is harmless, and names are shown again and again.
    const bool isHarmless = std::none_of(name.begin(), name.end(), [](QChar unit) {
        const char16_t code = unit.unicode();
        return code < 0x20 || code >= 0x7F;
    });
    if (isHarmless)
        return name;
    QString visible;
    visible.reserve(name.size());
    // toUcs4 gives U+FFFD for half a pair.
    const auto characters = name.toUcs4();
    for (const char32_t character : characters) {
        if (character < 0x20)
            visible += QChar(static_cast<char16_t>(firstControlPicture + character));
        else if (character == 0x7F)
            visible += QChar(pictureOfDelete);
        else if (character >= 0x80 && character <= 0x9F)
            visible += QStringLiteral("\\x%1").arg(static_cast<uint>(character), 2, 16);
        else if (changesDirection(character) || separatesLines(character))
            visible +=
                QStringLiteral("\\u%1").arg(static_cast<uint>(character), 4, 16, QChar(u'0'));
        else
            visible += QString::fromUcs4(&character, 1);
    }
    return visible;
}

}  // namespace nivor
