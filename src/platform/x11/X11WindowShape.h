#pragma once

#include <QRegion>

#include <vector>

#include <xcb/xcb.h>

class QPainterPath;

namespace ostrelle {

// Shapes of the toolkit's native windows, in their own device pixels.

/// The pixels that an outline in logical pixels covers.
QRegion nativeRegion(const QPainterPath &outline, double scale);
std::vector<xcb_rectangle_t> nativeRectangles(const QRegion &region);

/// The pixels to blur behind a window; an empty region: none. `property` is _KDE_NET_WM_BLUR_BEHIND_REGION.
void setBlurBehind(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t property, const QRegion &region);

} // namespace ostrelle
