#pragma once

class QColor;
class QPainter;
class QRectF;

namespace ostrelle {

/// Corner radius of a tile's plate, logical pixels.
inline constexpr double kPlateRadius = 13;

/// A tile's plate: a rounded fill with light along the inside of its top edge.
void paintPlate(QPainter &painter, const QRectF &rect, const QColor &fill, const QColor &topEdge);

} // namespace ostrelle
