#pragma once

class QImage;
class QPainter;
class QRectF;

namespace ostrelle {

/// A picture that fills `rect`, with rounded corners; what does not fit is left out at both sides.
void paintRounded(QPainter &painter, const QRectF &rect, double radius, const QImage &picture);

} // namespace ostrelle
