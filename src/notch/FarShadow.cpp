#include "notch/FarShadow.h"

#include "notch/Gaussian.h"
#include "notch/SurfaceFrame.h"

#include <cmath>

namespace ostrelle {
namespace {

// What a parabola cuts off a corner of radius 1: its area, the distance of its centroid from both sides, its variance
// along each.
constexpr double kCutArea = 1.0 / 6;
constexpr double kCutCentre = 1.0 / 5;
constexpr double kCutVariance = 1.0 / 14 - 1.0 / 25;

} // namespace

FarShadow::FarShadow(const SurfaceFrame &frame, const Recipe &recipe, int firstColumn, std::size_t columns)
    : m_frame(frame)
    , m_recipe(recipe)
    , m_firstColumn(firstColumn)
    , m_width(frame.size.width())
    , m_height(frame.size.height())
    , m_corner(frame.shape.bottomRadius / frame.scale)
    , m_ear(frame.shape.topRadius / frame.scale)
    , m_body(columns)
    , m_corners(columns)
    , m_ears(columns)
{
}

void FarShadow::fillColumns(int from, int to)
{
    for (int column = from; column < to; ++column) {
        const double x = (m_firstColumn + column + 0.5 - m_frame.rect.x()) / m_frame.scale;
        const auto i = static_cast<std::size_t>(column);
        m_body[i] = quickBlurredBar(x, 0, m_width, m_recipe.deviation);
        m_corners[i] = spots(x, kCutCentre * m_corner, m_corner);
        m_ears[i] = spots(x, -kCutCentre * m_ear, m_ear);
    }
}

void FarShadow::setRow(double y)
{
    const double shifted = y - m_recipe.offset;
    m_bodyFactor = static_cast<float>(m_recipe.opacity) * quickBlurredBar(shifted, 0, m_height, m_recipe.deviation);
    m_cornerFactor = rowFactor(shifted - (m_height - kCutCentre * m_corner), m_corner);
    m_earFactor = rowFactor(shifted - kCutCentre * m_ear, m_ear);
}

double FarShadow::spread(double radius) const
{
    return std::hypot(m_recipe.deviation, radius * std::sqrt(kCutVariance));
}

float FarShadow::rowFactor(double distance, double radius) const
{
    return static_cast<float>(m_recipe.opacity * kCutArea * radius * radius *
                              gaussianDensity(distance, spread(radius)));
}

float FarShadow::spots(double x, double inset, double radius) const
{
    return static_cast<float>(gaussianDensity(x - inset, spread(radius)) +
                              gaussianDensity(x - (m_width - inset), spread(radius)));
}

} // namespace ostrelle
