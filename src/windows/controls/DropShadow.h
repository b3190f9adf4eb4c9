#pragma once

class QColor;
class QPainter;
class QPixmap;
class QRectF;
class QSizeF;

namespace ostrelle {

/// The whole soft shadow of a rounded rectangle, below it as well. For what is painted over and rarely.
void paintDropShadow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation,
                     const QColor &color);

/// How far from its shape a shadow of this deviation is seen.
constexpr double dropShadowReach(double deviation)
{
    return 3 * deviation;
}

/// The same as a picture, for what is painted often: of a rectangle of this size with the shadow's reach around it.
QPixmap dropShadow(const QSizeF &size, double cornerRadius, double deviation, const QColor &color,
                   double devicePixelRatio);

} // namespace ostrelle
