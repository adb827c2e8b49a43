#include "Targets.h"

#include "Require.h"
#include "datasets/Thumbnail.h"

namespace nivor::fuzz {

void fuzzThumbnail(ByteView input)
{
    const std::shared_ptr<const Thumbnail> thumbnail = Thumbnail::fromFile(input);
    if (!thumbnail)
        return;
    const QSize size = thumbnail->size();
    require(!size.isEmpty(), "a thumbnail has pixels");
    require(qint64{size.width()} * size.height() <= Thumbnail::mostPixels,
            "a thumbnail is not too large");
    const QImage image = thumbnail->image();
    require(qint64{image.width()} * image.height() <= Thumbnail::mostPixels,
            "nor is the picture that it becomes");
}

}  // namespace nivor::fuzz
