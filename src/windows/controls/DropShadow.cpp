#include "windows/controls/DropShadow.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kStep = 0.5;

} // namespace

/// Fills on each other, from the widest on, that add up to a Gaussian step of the distance from the edge.
void paintDropShadow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation, const QColor &color)
{
    if (color.alpha() == 0)
        return;
    const double reach = dropShadowReach(deviation);
    double covered = 0;
    painter.save();
    painter.setPen(Qt::NoPen);
    for (double outward = reach; outward > -reach; outward -= kStep) {
        const QRectF box = shape.adjusted(-outward, -outward, outward, outward);
        if (box.isEmpty())
            break;
        const double wanted = color.alphaF() * 0.5 * std::erfc(outward / (deviation * std::numbers::sqrt2));
        QColor fill = color;
        fill.setAlphaF(static_cast<float>((wanted - covered) / (1 - covered)));
        covered = wanted;
        const double radius = std::max(cornerRadius + outward, 0.0);
        painter.setBrush(fill);
        painter.drawRoundedRect(box, radius, radius);
    }
    painter.restore();
}

QPixmap dropShadow(const QSizeF &size, double cornerRadius, double deviation, const QColor &color,
                   double devicePixelRatio)
{
    const double reach = dropShadowReach(deviation);
    QPixmap picture(((size + QSizeF(2 * reach, 2 * reach)) * devicePixelRatio).toSize());
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintDropShadow(painter, QRectF(QPointF(reach, reach), size), cornerRadius, deviation, color);
    return picture;
}

} // namespace ostrelle
