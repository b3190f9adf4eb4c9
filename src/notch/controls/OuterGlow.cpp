#include "notch/controls/OuterGlow.h"

#include "notch/controls/ColorMix.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kStep = 0.5;

void addRounded(QPainterPath &path, const QRectF &shape, double cornerRadius, double distance)
{
    path.addRoundedRect(shape.adjusted(-distance, -distance, distance, distance), cornerRadius + distance,
                        cornerRadius + distance);
}

} // namespace

/// Beyond an edge that is long against the blur, a shadow is a Gaussian step of the distance.
void paintOuterGlow(QPainter &painter, const QRectF &shape, double cornerRadius, double deviation, const QColor &color)
{
    for (double distance = 0; distance < outerGlowReach(deviation); distance += kStep) {
        const double opacity = 0.5 * std::erfc((distance + kStep / 2) / (deviation * std::numbers::sqrt2));
        QPainterPath band;
        addRounded(band, shape, cornerRadius, distance + kStep);
        addRounded(band, shape, cornerRadius, distance);
        painter.fillPath(band, faded(color, opacity));
    }
}

} // namespace ostrelle
