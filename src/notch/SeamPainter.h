#pragma once

#include <QRectF>

#include <span>
#include <vector>

class QPainter;

namespace ostrelle {

struct SurfaceFrame;
struct SurfaceState;

/// The lit line along the bottom edge and its two glows, for one frame.
class SeamPainter
{
public:
    SeamPainter(const SurfaceState &state, const SurfaceFrame &frame);

    /// Premultiplied colour channels of the glow at full coverage, blue, green, red, alpha.
    struct Glow
    {
        float blue;
        float green;
        float red;
        float alpha;
    };
    Glow glow() const { return m_glow; }
    /// Whether the glow reaches this row of the device.
    bool glowsAt(int deviceRow) const;
    /// Writes the glow's coverage in one row of the device, one value per pixel of the frame's bounds.
    void glowRow(int deviceRow, std::span<float> coverage) const;

    /// The line itself. The painter's units are device pixels.
    void paintLine(QPainter &painter) const;

private:
    const SurfaceState &m_state;
    const SurfaceFrame &m_frame;
    double m_opacity;
    QRectF m_line;
    Glow m_glow;
    std::vector<float> m_along; ///< the line's own opacity at each pixel of the bounds
};

} // namespace ostrelle
