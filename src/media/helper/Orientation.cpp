#include "media_helper/Orientation.h"

#include <cstddef>
#include <cstring>

namespace ostrelle {
Raster upright(Raster picture, int orientation)
{
    if (orientation <= 1 || orientation > 8)
        return picture;
    const int width = picture.size.width;
    const int height = picture.size.height;
    Raster result;
    result.layout = picture.layout;
    result.size = swapsSides(orientation) ? PixelSize{height, width} : picture.size;
    result.bytes.resize(picture.bytes.size());
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    std::uint8_t *out = result.bytes.data();
    for (int y = 0; y < result.size.height; ++y) {
        for (int x = 0; x < result.size.width; ++x, out += 4) {
            int sourceX = swapsSides(orientation) ? y : x;
            int sourceY = swapsSides(orientation) ? x : y;
            if (fromRight)
                sourceX = width - 1 - sourceX;
            if (fromBottom)
                sourceY = height - 1 - sourceY;
            const std::size_t pixel =
                static_cast<std::size_t>(sourceY) * static_cast<std::size_t>(width) + static_cast<std::size_t>(sourceX);
            std::memcpy(out, picture.bytes.data() + 4 * pixel, 4);
        }
    }
    return result;
}

} // namespace ostrelle
