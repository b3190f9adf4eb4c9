#pragma once

#include <QColor>
#include <QPointF>
#include <QSizeF>

#include <array>
#include <span>
#include <vector>

namespace ostrelle {

/// A linear gradient of evenly spaced opaque colours, asked for single points. Its lines of equal colour are at right
/// angles to the line from start to end.
class GradientSampler
{
public:
    /// Red, green, blue from 0 to 1.
    using Color = std::array<float, 3>;

    GradientSampler(std::span<const QColor> colors, const QPointF &start, const QPointF &end);

    Color at(const QPointF &position) const;

private:
    std::vector<Color> m_colors;
    QPointF m_start;
    QPointF m_direction; ///< per pixel, in intervals between colours
};

/// cornerFalloff() of a surface, asked for single points.
class CornerFalloff
{
public:
    CornerFalloff(const QSizeF &surface, double reach);
    double at(const QPointF &position) const;

private:
    QPointF m_centre;
    double m_reach;
};

} // namespace ostrelle
