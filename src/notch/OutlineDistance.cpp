#include "notch/OutlineDistance.h"

#include "notch/SurfaceFrame.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

// A corner of the outline is a parabola: sqrt(u) + sqrt(v) = 1, in units of its radius from the corner of the
// rectangle.

/// Positive on the side of the rectangle's corner: value over gradient of (u - v)² - 2 (u + v) + 1.
float distanceToParabola(float x, float y, float radius)
{
    const float u = x / radius;
    const float v = y / radius;
    const float difference = u - v;
    const float value = difference * difference - 2 * (u + v) + 1;
    return radius * value / (2 * std::sqrt(2 * (difference * difference + 1)));
}

float parabolaAt(float along, float radius)
{
    const float rest = 1 - std::sqrt(along / radius);
    return radius * rest * rest;
}

} // namespace

OutlineDistance::OutlineDistance(const SurfaceFrame &frame)
    : m_centre(static_cast<float>(frame.rect.center().x()))
    , m_half(static_cast<float>(frame.rect.width() / 2))
    , m_height(static_cast<float>(frame.rect.height()))
    , m_corner(static_cast<float>(frame.shape.bottomRadius))
    , m_ear(static_cast<float>(frame.shape.topRadius))
{
}

float OutlineDistance::depth(float side, float y) const
{
    const float bottom = m_height - y;
    if (side < m_corner && bottom < m_corner)
        return -distanceToParabola(side, bottom, m_corner);
    if (y < m_ear && std::abs(side) < m_ear)
        return distanceToParabola(-side, y, m_ear);
    return std::min(side, bottom);
}

float OutlineDistance::inset(float y) const
{
    const float inside = std::clamp(y, 0.0F, m_height);
    if (inside < m_ear)
        return -parabolaAt(inside, m_ear);
    if (m_height - inside < m_corner)
        return parabolaAt(m_height - inside, m_corner);
    return 0;
}

float OutlineDistance::sideOf(int x) const
{
    return m_half - std::abs(static_cast<float>(x) + 0.5F - m_centre);
}

float lineCoverage(float distance, float width)
{
    const float half = width / 2;
    return std::clamp(std::min(distance + 0.5F, half) - std::max(distance - 0.5F, -half), 0.0F, 1.0F);
}

} // namespace ostrelle
