#include "media_helper/GifReader.h"
#include "media_helper/ImageFacts.h"

namespace ostrelle {

std::optional<ImageFacts> readGifFacts(ByteSource &source)
{
    ByteReader bytes(source);
    const Gif gif = openedGif(bytes);
    int transparent = NO_TRANSPARENT_COLOR;
    if (!gif || !findGifPicture(gif.get(), transparent))
        return std::nullopt;
    ImageFacts facts;
    facts.format = "GIF";
    facts.width = gif->SWidth;
    facts.height = gif->SHeight;
    facts.model = color_model::kRgb;
    facts.bitDepth = 8;
    facts.hasAlpha = transparent != NO_TRANSPARENT_COLOR;
    return facts;
}

} // namespace ostrelle
