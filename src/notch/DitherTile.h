#pragma once

#include <array>
#include <cstdint>

namespace ostrelle {

inline constexpr int kDitherTileSize = 128;

/// One fixed tile of noise, evenly spread over one step of an 8-bit channel (0 to 63 lane units). Added before a
/// channel is cut to 8 bits it turns the edges of slow gradients into grain too fine to see; exact values stay as they
/// are.
using DitherTile = std::array<std::array<std::int16_t, kDitherTileSize>, kDitherTileSize>;
const DitherTile &ditherTile();

} // namespace ostrelle
