#pragma once

#include "notch/GradientSampler.h"
#include "notch/OutlineDistance.h"
#include "notch/PixelLanes.h"

#include <span>

namespace ostrelle {

struct SurfaceFrame;
struct SurfaceState;

/// Lip, coloured rim and neutral hairline along the outline, for one frame: lines on the outline whose outer halves are
/// cut off with everything else outside it.
class RimPainter
{
public:
    RimPainter(const SurfaceState &state, const SurfaceFrame &frame);

    /// Paints what crosses one row of the device and clears what lies outside the outline. `row` holds the pixels of
    /// the frame's bounds.
    void paintAndCut(int deviceRow, std::span<LanePair> row) const;

private:
    /// What is the same for all pixels of a row: opacities of white.
    struct RowTones
    {
        float y;
        float lip;
        float hairline;
    };

    RowTones tonesAt(int deviceRow) const;
    /// Columns of the device, the second excluded.
    void paintColumns(int from, int to, const RowTones &tones, std::span<LanePair> row) const;
    Quad rimColor(float x, float y) const;
    float insideShare(float depth, float y) const;
    void clearColumns(int from, int to, std::span<LanePair> row) const;

    const SurfaceState &m_state;
    const SurfaceFrame &m_frame;
    OutlineDistance m_outline;
    GradientSampler m_gradient;
    CornerFalloff m_falloff;
    float m_reach; ///< device pixels on either side of the outline that the widest line touches
};

} // namespace ostrelle
