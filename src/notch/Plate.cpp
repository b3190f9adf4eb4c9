#include "notch/Plate.h"

#include <QPainter>
#include <QPainterPath>

namespace ostrelle {
namespace {

constexpr double kEdgeHeight = 0.5;

} // namespace

void paintPlate(QPainter &painter, const QRectF &rect, const QColor &fill, const QColor &topEdge)
{
    QPainterPath plate;
    plate.addRoundedRect(rect, kPlateRadius, kPlateRadius);
    painter.fillPath(plate, fill);
    painter.fillPath(plate.subtracted(plate.translated(0, kEdgeHeight)), topEdge);
}

} // namespace ostrelle
