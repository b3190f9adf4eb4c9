#include "windows/onboarding/DropShadow.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kReach = 3; ///< in deviations
constexpr double kStep = 0.5;

} // namespace

/// Fills on each other, from the widest on, that add up to a Gaussian step of the distance from the edge.
void paintDropShadow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation, const QColor &color)
{
    double covered = 0;
    painter.save();
    painter.setPen(Qt::NoPen);
    for (double outward = kReach * deviation; outward > -kReach * deviation; outward -= kStep) {
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

} // namespace ostrelle
