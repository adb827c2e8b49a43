#include "cli/TerminalText.h"

#include <QChar>
#include <QList>

#include <algorithm>
#include <array>
#include <iterator>

namespace nivor {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// The blocks of Unicode whose characters are East Asian wide or fullwidth (UAX #11), and emoji.
constexpr std::array<Range, 14> wideRanges{{{0x1100, 0x115F},
                                            {0x231A, 0x231B},
                                            {0x23E9, 0x23F3},
                                            {0x2E80, 0x303E},
                                            {0x3041, 0x33FF},
                                            {0x3400, 0x4DBF},
                                            {0x4E00, 0x9FFF},
                                            {0xA000, 0xA4CF},
                                            {0xAC00, 0xD7A3},
                                            {0xF900, 0xFAFF},
                                            {0xFE30, 0xFE6F},
                                            {0xFF00, 0xFF60},
                                            {0x1F300, 0x1FAFF},
                                            {0x20000, 0x3FFFD}}};

int columnsOf(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    const bool isWide =
        std::any_of(wideRanges.begin(), wideRanges.end(), [character](const Range& range) {
            return character >= range.first && character <= range.last;
        });
    return isWide ? 2 : 1;
}

}  // namespace

int terminalColumns(const QString& text)
{
    int columns = 0;
    const auto characters = text.toUcs4();
    for (const char32_t character : characters)
        columns += columnsOf(character);
    return columns;
}

QString fittedToColumns(const QString& text, int columns)
{
    if (terminalColumns(text) <= columns)
        return text;
    QString fitted;
    int used = 1;  // of the ellipsis
    const auto characters = text.toUcs4();
    for (const char32_t character : characters) {
        used += columnsOf(character);
        if (used > columns)
            break;
        fitted += QString::fromUcs4(&character, 1);
    }
    return columns > 0 ? fitted + QChar(u'\u2026') : QString();
}

}  // namespace nivor
