#pragma once

#include "media_helper/ByteSource.h"

#include <gif_lib.h>

#include <memory>

namespace ostrelle {

struct CloseGif
{
    void operator()(GifFileType *gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// giflib behind the header, reading from `bytes`, which outlives it. Null when there is none.
Gif openedGif(ByteReader &bytes);

/// Goes to the first picture and leaves its transparent colour, or -1; false when there is none. Of the extensions
/// before it only the graphic control one counts. The canvas has a size afterwards.
bool findGifPicture(GifFileType *gif, int &transparent);

} // namespace ostrelle
