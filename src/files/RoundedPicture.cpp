#include "files/RoundedPicture.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace ostrelle {

void paintRounded(QPainter &painter, const QRectF &rect, double radius, const QImage &picture)
{
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double scale = std::max(rect.width() / picture.width(), rect.height() / picture.height());
    const QPointF corner = rect.center() - QPointF(picture.width(), picture.height()) * scale / 2;
    QBrush brush(picture);
    brush.setTransform(QTransform::fromTranslate(corner.x(), corner.y()).scale(scale, scale));
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

} // namespace ostrelle
