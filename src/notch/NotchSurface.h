#pragma once

#include "notch/SurfaceCache.h"
#include "notch/Theme.h"
#include "platform/PanelHost.h"
#include "records/NotchTheme.h"

#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

class QPainter;

namespace ostrelle {

/// What keeps a theme recognisable where the surface is painted small. The defaults are the notch's own.
struct SurfaceEmphasis
{
    double poolReach = 0.6; ///< in surface widths
    double poolStrength = 1;
    double seamHeight = 1.5;
    double seamAboveEdge = 8;
    double rimWidth = 1; ///< of the coloured one

    friend bool operator==(const SurfaceEmphasis &, const SurfaceEmphasis &) = default;
};

/// Everything the surface is drawn from. Lengths are logical pixels.
struct SurfaceState
{
    using Glass = PanelHost::Glass;

    QSizeF size;
    double expansion = 0; ///< 0 closed, 1 open; a spring may go beyond both
    double bottomRadius = 0;
    double topRadius = 0;
    ColorScheme scheme = ColorScheme::Dark;
    Contrast contrast = Contrast::Normal;
    NotchTheme theme = NotchTheme::Spectrum;
    /// With Compositor nothing is painted behind the veil. Without a backdrop the others use a plain tone. With None
    /// everything inside the outline is opaque and nothing is painted outside.
    Glass glass = Glass::Snapshot;
    /// The blurred picture of what lies behind, from blurBackdrop().
    QImage backdrop = {};
    /// What the backdrop shows, relative to the surface's top centre. Empty: eight pixels for each of its own, hanging
    /// from that point.
    QRectF backdropArea = {};
    SurfaceEmphasis emphasis = {};

    friend bool operator==(const SurfaceState &, const SurfaceState &) = default;
};

/// The glass's progress: 0 while the notch is closed or just starts to open, 1 when it is open.
double glassProgress(double expansion);

/// How strongly the seam is lit: only in the last two thirds of the opening.
double seamOpacity(double expansion);

/// The outline of the surface in the coordinates of `topCentre`.
QPainterPath surfaceOutline(const QPointF &topCentre, const SurfaceState &state);

/// Paints the surface hanging from `topCentre`, with the shadow around it, which needs 46 at the sides and below. The
/// painter may be translated and uniformly scaled, not rotated. The cache only saves work: any cache gives the same
/// pixels.
void paintNotchSurface(QPainter &painter, const QPointF &topCentre, const SurfaceState &state, SurfaceCache &cache);

} // namespace ostrelle
