#pragma once

#include "media_common/HelperProtocol.h"
#include "media_helper/Raster.h"

#include <cairo.h>

#include <functional>

namespace ostrelle {

class PictureBuilder;

/// Draws a picture of outlines, `width` by `height` of its own units, in the size that `builder` wishes for, and
/// delivers it. `draw` gets the size in pixels and returns whether it could.
HelperStatus deliverDrawing(double width, double height, PictureBuilder &builder,
                            const std::function<bool(cairo_t *cairo, PixelSize pixels)> &draw);

} // namespace ostrelle
