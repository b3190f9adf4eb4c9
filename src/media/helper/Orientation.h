#pragma once

#include "media_helper/Raster.h"

#include <cstdint>
#include <span>

namespace ostrelle {

/// Exif 2.32, tag 0x0112: 1 is upright, 2 to 8 are the mirrored and turned ways to store a picture.
int exifOrientation(std::span<const std::uint8_t> exif);

/// The orientation exchanges width and height.
constexpr bool swapsSides(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/// An RGBA picture as it is to be seen.
Raster upright(Raster picture, int orientation);

} // namespace ostrelle
