#pragma once

#include "media_helper/Raster.h"

#include <cstdint>
#include <vector>

namespace ostrelle {

/// The picture as RGBA in sRGB, by its embedded profile where that is sound and fits the layout, else by the plain
/// meaning of its channels. Alpha is kept.
Raster toSrgb(Raster picture, const std::vector<std::uint8_t> &icc);

} // namespace ostrelle
