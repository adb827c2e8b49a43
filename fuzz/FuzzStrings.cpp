#include "Targets.h"

#include "Require.h"
#include "datasets/DateFormatter.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <QStringView>

namespace nivor::fuzz {
namespace {

void requireDate(const QString& text)
{
    const QDateTime date = ObjectInfoData::sharedDateFormatter().dateFromString(text);
    require(!date.isValid() || date.toString(QStringLiteral("yyyyMMdd'T'HHmmss")) == text,
            "a date is what its text says");
}

void decodeText(ByteView input)
{
    const QString before = QStringLiteral("before");
    QString text = before;
    const bool decoded = ObjectInfoData::convertByteArrayToNSString(input, text);
    const bool isWhole = !input.empty() && input.size() >= 1 + 2 * std::size_t{input[0]};
    require(decoded == isWhole, "a text is decoded when all of it is there");
    require(decoded || text == before, "what is not decoded leaves the old text");
    if (!decoded)
        return;
    require(QStringView(text).isValidUtf16(), "a text is valid UTF-16");
    require(text.isNull() || text.size() == input[0], "every unit of a text is kept");

    QString sameText = before;
    require(ObjectInfoData::convertByteArrayToDateString(input, sameText) && sameText == text,
            "the text of a date is a text");

    const QString trimmed = NVX_stringByTrimmingNullCharacters(text);
    require(text.startsWith(trimmed), "trimming keeps the beginning");
    require(trimmed.indexOf(QChar(u'\0')) <= 0, "no null is left behind a character");
    requireDate(trimmed);
}

void decodeArray(ByteView input)
{
    const std::vector<std::uint16_t> before{1, 2, 3};
    std::vector<std::uint16_t> elements = before;
    const bool decoded = ObjectInfoData::convertByteArrayToNSArray(input, elements);
    require(decoded || elements == before, "what is not decoded leaves the old elements");
    if (!decoded)
        return;
    require(input.size() >= 4 + 2 * elements.size(), "every element was sent");
    for (std::size_t i = 0; i < elements.size(); ++i) {
        require(elements[i] == (input[4 + 2 * i] | input[5 + 2 * i] << 8),
                "elements are those of the wire");
    }
}

}  // namespace

void fuzzStrings(ByteView input)
{
    decodeText(input);
    decodeArray(input);
    // As if the bytes were the date's characters: most PTP strings are too short to be one.
    requireDate(QString::fromLatin1(reinterpret_cast<const char*>(input.data()),
                                    static_cast<qsizetype>(input.size())));
}

}  // namespace nivor::fuzz
