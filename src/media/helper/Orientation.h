#pragma once

#include "media_helper/Raster.h"

namespace ostrelle {

/// The orientation, as ExifFacts has it, exchanges width and height.
constexpr bool swapsSides(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/// An RGBA picture as it is to be seen.
Raster upright(Raster picture, int orientation);

} // namespace ostrelle
