#pragma once

#include "notch/NotchShape.h"

#include <QPainterPath>
#include <QRect>
#include <QRectF>
#include <QSizeF>

namespace ostrelle {

struct SurfaceState;

/// Where one frame of the surface lies on its paint device. Rectangles and radii are device pixels, counted from the
/// device's origin.
struct SurfaceFrame
{
    SurfaceFrame(const SurfaceState &state, const QPointF &topCentre, double deviceScale);

    QPainterPath outline() const { return shape.path(rect); }
    QPainterPath openOutline() const { return shape.openPath(rect); }

    double scale; ///< device pixels per logical pixel
    QSizeF size;  ///< of the surface, in logical pixels
    double glass; ///< glassProgress()
    QRectF rect;
    NotchShape shape; ///< radii as drawn
    QRect bounds;     ///< whole pixels that the outline touches

    friend bool operator==(const SurfaceFrame &, const SurfaceFrame &) = default;
};

} // namespace ostrelle
