#pragma once

class QColor;
class QPainter;
class QRectF;

namespace ostrelle {

/// The whole soft shadow of a rounded rectangle, below it as well. For what is painted over and rarely.
void paintDropShadow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation,
                     const QColor &color);

} // namespace ostrelle
