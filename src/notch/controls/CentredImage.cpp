#include "notch/controls/CentredImage.h"

#include <QImage>
#include <QPainter>

namespace ostrelle {

void paintCentred(QPainter &painter, const QRectF &rect, const QImage &image)
{
    const QSizeF size = image.deviceIndependentSize();
    const QPoint corner = (rect.center() - QPointF(size.width(), size.height()) / 2).toPoint();
    painter.save();
    // Under a scale.
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(corner, image);
    painter.restore();
}

} // namespace ostrelle
