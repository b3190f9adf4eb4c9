#pragma once

#include <QPointF>

class QImage;

namespace ostrelle {

class SeamPainter;
struct SurfaceFrame;
struct SurfaceState;

/// The coarse grid that everything smooth is computed on, about eight logical pixels apart: the first node is the
/// centre of the first pixel of the frame's bounds, and all pixels lie between nodes.
struct GlassGrid
{
    explicit GlassGrid(const SurfaceFrame &frame);

    /// Where a node lies on the surface, in logical pixels from its top left corner.
    QPointF position(int column, int row) const;

    int cell; ///< device pixels from node to node, even
    int columns;
    int rows;

private:
    QPointF m_first;
    double m_step;
};

/// Fills the image, which covers the frame's bounds, with backdrop, veil, wash, pool, sheen, the seam's glow and the
/// rims, all cut to the outline.
void paintGlass(QImage &image, const SurfaceState &state, const SurfaceFrame &frame, const SeamPainter &seam);

} // namespace ostrelle
