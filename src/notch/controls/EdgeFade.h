#pragma once

#include <functional>

class QPainter;
class QRectF;

namespace ostrelle {

/// Over how many logical pixels something fades out at its edges: at the top and the bottom, or at the sides.
struct EdgeFade
{
    double top = 0;
    double bottom = 0;
    double left = 0;
    double right = 0;
};

/// Paints content that fades into whatever was painted before: `paintContent` is called with a painter in the same
/// coordinates, once for the middle and once for each band with a length, and must paint the same each time. The
/// painter may be translated and scaled, not rotated.
void paintEdgeFaded(QPainter &painter, const QRectF &rect, const EdgeFade &fade,
                    const std::function<void(QPainter &)> &paintContent);

} // namespace ostrelle
