#include "notch/controls/AngledGradient.h"

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrelle {

QLinearGradient angledGradient(const QRectF &box, double degrees, const QGradientStops &stops)
{
    const double angle = degrees * std::numbers::pi / 180;
    const QPointF direction(std::sin(angle), -std::cos(angle));
    const double length = std::abs(direction.x()) * box.width() + std::abs(direction.y()) * box.height();
    const double first = std::min(stops.constFirst().first, 0.0);
    const double last = std::max(stops.constLast().first, 1.0);
    QLinearGradient gradient(box.center() + direction * length * (first - 0.5),
                             box.center() + direction * length * (last - 0.5));
    for (const auto &[position, color] : stops)
        gradient.setColorAt((position - first) / (last - first), color);
    return gradient;
}

} // namespace ostrelle
