#include "notch/NotchShape.h"

#include <QRectF>

#include <algorithm>

namespace ostrelle {

NotchShape NotchShape::fitted(double width, double height) const
{
    const double bottom = std::max(0.0, std::min({bottomRadius, height, width / 2}));
    const double top = std::max(0.0, std::min({topRadius, height - bottom, (width - 2 * bottom) / 2}));
    return {bottom, top};
}

QPainterPath NotchShape::openPath(const QRectF &rect) const
{
    const auto [bottom, top] = fitted(rect.width(), rect.height());
    const double left = rect.x();
    const double right = rect.x() + rect.width();
    const double upper = rect.y();
    const double lower = rect.y() + rect.height();

    QPainterPath outline;
    outline.moveTo(left - top, upper);
    outline.quadTo(left, upper, left, upper + top);
    outline.lineTo(left, lower - bottom);
    outline.quadTo(left, lower, left + bottom, lower);
    outline.lineTo(right - bottom, lower);
    outline.quadTo(right, lower, right, lower - bottom);
    outline.lineTo(right, upper + top);
    outline.quadTo(right, upper, right + top, upper);
    return outline;
}

QPainterPath NotchShape::path(const QRectF &rect) const
{
    QPainterPath outline = openPath(rect);
    outline.closeSubpath();
    return outline;
}

} // namespace ostrelle
