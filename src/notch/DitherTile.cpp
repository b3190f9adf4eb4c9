#include "notch/DitherTile.h"

#include <cmath>

namespace ostrelle {
namespace {

DitherTile makeTile()
{
    // Interleaved gradient noise (J. Jimenez, "Next generation post processing in Call of Duty", SIGGRAPH 2014):
    // neighbours differ much, so the grain averages out within three pixels.
    DitherTile tile{};
    for (std::size_t y = 0; y < tile.size(); ++y) {
        for (std::size_t x = 0; x < tile.size(); ++x) {
            const double slope = 0.06711056 * static_cast<double>(x) + 0.00583715 * static_cast<double>(y);
            const double noise = std::fmod(52.9829189 * std::fmod(slope, 1.0), 1.0);
            tile[y][x] = static_cast<std::int16_t>(noise * 64);
        }
    }
    return tile;
}

} // namespace

const DitherTile &ditherTile()
{
    static const DitherTile tile = makeTile();
    return tile;
}

} // namespace ostrelle
