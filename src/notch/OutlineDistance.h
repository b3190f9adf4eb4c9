#pragma once

namespace ostrelle {

struct SurfaceFrame;

/// How far a place is from the outline of one frame, without its edge along the top. Everything along the outline that
/// is thin beside its radii (near shadow, contact line, rims) is painted from this distance: stroking the path cost
/// three times as much as all other painting together. Lengths are device pixels.
class OutlineDistance
{
public:
    explicit OutlineDistance(const SurfaceFrame &frame);

    /// Positive inside, to the first order near a corner or an ear. `side` is the distance inside the nearer side of
    /// the rectangle, `y` counts from its top edge.
    float depth(float side, float y) const;

    /// Whether a place lies beside the rectangle where an ear reaches.
    bool isBesideEar(float side, float y) const { return side < 0 && -side < m_ear && y < m_ear; }

    /// How far inside the rectangle's side the outline runs at this height; negative along an ear.
    float inset(float y) const;

    /// The distance of device column `x`'s centre inside the nearer side.
    float sideOf(int x) const;

    float width() const { return 2 * m_half; }
    float height() const { return m_height; }
    float corner() const { return m_corner; }
    float ear() const { return m_ear; }

private:
    float m_centre;
    float m_half;
    float m_height;
    float m_corner;
    float m_ear;
};

/// How much of a pixel, whose centre is `distance` from it, a line of this width covers.
float lineCoverage(float distance, float width);

} // namespace ostrelle
