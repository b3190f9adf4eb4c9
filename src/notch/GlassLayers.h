#pragma once

#include "notch/PixelLanes.h"

#include <vector>

namespace ostrelle {

struct GlassGrid;
struct SurfaceFrame;
struct SurfaceState;

/// The layers that are smooth in both directions, put together at the nodes of the grid: backdrop, veil, wash, pool.
/// Premultiplied, in lane units, row by row.
std::vector<LaneQuad> glassLayers(const SurfaceState &state, const SurfaceFrame &frame, const GlassGrid &grid);

/// What the sheen adds to each channel at this height of the surface (0 top, 1 bottom), in lane units.
float sheenAt(double height, const SurfaceState &state, const SurfaceFrame &frame);

} // namespace ostrelle
