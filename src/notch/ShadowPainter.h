#pragma once

#include "notch/OutlineDistance.h"
#include "notch/Theme.h"

#include <QRect>
#include <QRgb>

#include <array>
#include <cstddef>
#include <vector>

class QImage;

namespace ostrelle {

struct SurfaceFrame;

/// What the surface casts outside its outline: two drop shadows and the dark line of contact. Nothing inside, so that
/// the glass may be translucent.
class ShadowPainter
{
public:
    /// Left of the surface, right of it, and the band below with both corners.
    static constexpr std::size_t kPieces = 3;
    using Pieces = std::array<QRect, kPieces>;

    /// In device pixels; some may be empty.
    static Pieces piecesOf(const SurfaceFrame &frame);

    ShadowPainter(ColorScheme scheme, const SurfaceFrame &frame, const QRect &piece);

    /// Fills the image with the shadow in the piece.
    void paint(QImage &image);

private:
    /// What follows the outline closely, per column.
    struct EdgeRow
    {
        explicit EdgeRow(std::size_t columns)
            : shade(columns, 0)
            , outside(columns, 1)
        {
        }

        std::vector<float> shade;   ///< opacity of near shadow and contact line together
        std::vector<float> outside; ///< 0 where a pixel lies wholly inside the outline; half covered ones lie over it
    };

    const EdgeRow &edgeRow(float y);
    void fillEdges(EdgeRow &edges, float y) const;
    void fillEdge(EdgeRow &edges, float y, int column) const;
    float nearShadow(float side, float y) const;
    float earShadow(float outside, float y) const;
    float nearIntegral(float depth) const;

    const SurfaceFrame &m_frame;
    OutlineDistance m_outline;
    ColorScheme m_scheme;
    QRect m_piece;
    float m_nearDeviation; ///< device pixels, as the next two
    float m_nearOffset;
    float m_edgeReach; ///< nothing that follows the outline is farther outside its rectangle
    int m_flatFrom;    ///< columns from here on, up to the next, are all alike
    int m_flatTo;
    EdgeRow m_straight; ///< of all rows between ears and corners
    EdgeRow m_row;
    EdgeRow m_clear; ///< of rows below all that follows the outline
    std::vector<QRgb> m_line;
};

} // namespace ostrelle
