#pragma once

#include "notch/PixelLanes.h"

#include <cstddef>
#include <vector>

namespace ostrelle {

struct SurfaceFrame;

/// The wide, soft drop shadow of the surface: its outline blurred. The rectangle becomes a product of two profiles. The
/// corners cut off it and the ears added to it are small beside the blur, so each may be blurred as a spot of its own
/// area and spread, which are products again: a row costs a few multiplications per pixel.
class FarShadow
{
public:
    /// `offset` and `deviation` are logical pixels.
    struct Recipe
    {
        double opacity;
        double offset;
        double deviation;
    };

    /// For `columns` columns of the device from `firstColumn` on.
    FarShadow(const SurfaceFrame &frame, const Recipe &recipe, int firstColumn, std::size_t columns);

    /// Makes columns known, the second excluded. Only known columns may be asked for.
    void fillColumns(int from, int to);

    /// Chooses the row, by its distance below the surface's top edge in logical pixels.
    void setRow(double y);
    /// The opacity of four columns from this one on.
    Quad fourAt(std::size_t column) const
    {
        return splat(m_bodyFactor) * fourFrom(&m_body[column]) - splat(m_cornerFactor) * fourFrom(&m_corners[column]) +
               splat(m_earFactor) * fourFrom(&m_ears[column]);
    }

private:
    double spread(double radius) const;
    float rowFactor(double distance, double radius) const;
    float spots(double x, double inset, double radius) const;

    const SurfaceFrame &m_frame;
    Recipe m_recipe;
    int m_firstColumn;
    double m_width;
    double m_height;
    double m_corner;
    double m_ear;
    std::vector<float> m_body;
    std::vector<float> m_corners;
    std::vector<float> m_ears;
    float m_bodyFactor = 0;
    float m_cornerFactor = 0;
    float m_earFactor = 0;
};

} // namespace ostrelle
