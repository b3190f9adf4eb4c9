#include "media_helper/GifReader.h"
#include "media_helper/ImageFacts.h"

namespace ostrelle {

std::optional<ImageFacts> readGifFacts(ByteSource &source)
{
    ByteReader bytes(source);
    const Gif gif = openedGif(bytes);
    const std::optional<GifPrelude> prelude = gif ? findGifPicture(gif.get()) : std::nullopt;
    // One that ends behind the size of its picture has a size as well.
    if (!gif || (!prelude && (gif->Image.Width < 1 || gif->Image.Height < 1)))
        return std::nullopt;
    ImageFacts facts;
    facts.format = "GIF";
    facts.width = gif->SWidth > 0 ? gif->SWidth : gif->Image.Width;
    facts.height = gif->SHeight > 0 ? gif->SHeight : gif->Image.Height;
    facts.model = color_model::kRgb;
    facts.bitDepth = 8;
    if (prelude) {
        facts.icc = prelude->icc;
        facts.hasAlpha = prelude->transparent != NO_TRANSPARENT_COLOR;
    }
    return facts;
}

} // namespace ostrelle
