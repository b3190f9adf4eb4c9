#pragma once

class QColor;
class QPainter;
class QRectF;

namespace ostrelle {

/// How far a glow of this deviation is seen.
constexpr double outerGlowReach(double deviation)
{
    return 3 * deviation;
}

/// The part of a rounded rectangle's soft shadow that lies outside of it.
void paintOuterGlow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation, const QColor &color);

} // namespace ostrelle
