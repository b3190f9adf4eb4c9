#pragma once

class QImage;
class QPainter;
class QRectF;

namespace ostrelle {

/// The image in the middle of `rect`, as large as it is, on whole logical pixels so that an icon stays sharp.
void paintCentred(QPainter &painter, const QRectF &rect, const QImage &image);

} // namespace ostrelle
