#pragma once

#include <QPainterPath>

class QRectF;

namespace ostrelle {

/// The outline every notch surface is drawn with: convex at the bottom corners, and at the top flared into ears that
/// reach beyond the rectangle, so that the surface looks fused to the screen's edge.
struct NotchShape
{
    double bottomRadius = 0;
    double topRadius = 0;

    /// The closed outline. Radii that do not fit are reduced, the bottom's first right to fit.
    QPainterPath path(const QRectF &rect) const;
    /// The same without the edge along the top, from ear tip to ear tip.
    QPainterPath openPath(const QRectF &rect) const;
    /// The radii as drawn in a rectangle of this size.
    NotchShape fitted(double width, double height) const;

    friend bool operator==(const NotchShape &, const NotchShape &) = default;
};

} // namespace ostrelle
