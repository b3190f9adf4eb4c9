#pragma once

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

namespace ostrelle {

/// Both return RGB32 images of a part of the root window in native pixels, null when it cannot be had (no part of
/// `area` on the root window, an unusual pixel format, a lost connection). They block for the server's answers, never
/// for another program's. Any thread, on a connection that it alone uses meanwhile.

/// What the screen shows there.
QImage captureScreen(xcb_connection_t *connection, const xcb_screen_t &screen, const QRect &area);

/// What would be seen there without `window`, a child of the root window, and all above it: the contents of the windows
/// below, drawn over each other as a compositor would. Only while a compositor redirects windows.
QImage captureBelow(xcb_connection_t *connection, const xcb_screen_t &screen, xcb_window_t window, const QRect &area);

} // namespace ostrelle
