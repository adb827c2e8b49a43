#include "soak/RandomCard.h"

#include "simulator/FileFormat.h"

#include <QBuffer>
#include <QImage>

#include <string>
#include <vector>

namespace nivor::soak {
namespace {

const std::array<std::u16string, 21> names{
    u"DSC_0001.JPG",
    u"DSC_0001.JPG",  // more often than the others, so that copies have to be numbered
    u"DSC_0001.JPG",
    u"DSC_0002.MOV",
    u"dsc_0002.mov",
    u"",
    u".",
    u"..",
    u"../../escape.jpg",
    u"/tmp/absolute.jpg",
    u"a/b\\c:d*e?.jpg",
    u"tab\tbell\a\nline.mov",
    u"trailing dot.",
    u".profile",
    u"-rf",
    u"%s%n%x.jpg",
    u"写真 Küste é.JPG",
    u"\U0001F4F7.png",
    u" ",
    std::u16string(254, u'長'),
    std::u16string(250, u'x') + u".JPG",
};

// Decodes to no text at all, so what follows it is looked for in the wrong place.
const std::u16string halfCharacter = u"half \xD83D.jpg";

std::uint64_t randomSize(Random& random)
{
    // Around the sizes at which, with the header's 12 bytes, a packet or a piece is full.
    static const std::array<std::uint64_t, 16> special{
        0, 0, 1, 12, 499, 500, 501, 1012, 5107, 5108, 5109, 5620, 5632, 8180, 8192, 65524};
    if (random.chance(40))
        return random.oneOf(special);
    return random.chance(10) ? random.between(1, 1'500'000) : random.between(1, 60'000);
}

ByteBuffer pngOf(int width, int height)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    image.save(&buffer, "PNG");
    return {bytes.begin(), bytes.end()};
}

ByteBuffer randomThumbnail(Random& random)
{
    static const std::array<ByteBuffer, 3> pictures{pngOf(8, 6), pngOf(160, 120), pngOf(320, 1)};
    if (random.chance(70))
        return random.oneOf(pictures);
    ByteBuffer noise(random.between(1, 9'000));
    for (std::uint8_t& byte : noise)
        byte = static_cast<std::uint8_t>(random.below(256));
    return noise;
}

}  // namespace

std::shared_ptr<MemoryCard> makeRandomCard(Random& random, bool isFaulty)
{
    auto card = std::make_shared<MemoryCard>();
    auto handle = static_cast<std::uint32_t>(random.between(1, 0xF0000000));
    const auto nextHandle = [&] {
        return handle += static_cast<std::uint32_t>(random.between(1, 1000));
    };

    std::vector<std::uint32_t> parents{noHandle};
    for (std::uint64_t i = random.below(5); i > 0; --i) {
        parents.push_back(card->add(CardObject{.handle = nextHandle(),
                                               .parent = parents[random.below(parents.size())],
                                               .name = random.oneOf(names),
                                               .format = ObjectFormatCode::Association}));
    }
    for (std::uint64_t i = random.below(13); i > 0; --i) {
        const std::u16string& name =
            isFaulty && random.chance(4) ? halfCharacter : random.oneOf(names);
        const std::uint32_t added =
            card->add(CardObject{.handle = nextHandle(),
                                 .parent = parents[random.below(parents.size())],
                                 .name = name,
                                 .format = formatOfFile(name),
                                 .size = randomSize(random),
                                 .captureDate = u"20240102T030405",
                                 .modificationDate = u"20240203T040506",
                                 .isProtected = random.chance(10)});
        if (random.chance(50))
            card->setThumbnail(added, randomThumbnail(random));
    }
    return card;
}

}  // namespace nivor::soak
