#pragma once

#include "media_helper/ByteSource.h"

#include <gif_lib.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {

struct CloseGif
{
    void operator()(GifFileType *gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// giflib behind the header, reading from `bytes`, which outlives it. Null when there is none.
Gif openedGif(ByteReader &bytes);

/// What stands before a picture and counts for it.
struct GifPrelude
{
    int transparent = NO_TRANSPARENT_COLOR;
    std::vector<std::uint8_t> icc; ///< the profile of all pictures, in an application's extension; empty when none
};

/// Goes to the first picture; nothing when there is none. The canvas has a size afterwards.
std::optional<GifPrelude> findGifPicture(GifFileType *gif);

} // namespace ostrelle
