#pragma once

#include <xcb/xcb.h>

namespace ostrelle {

/// The server serves X programs on a Wayland desktop: it gets keys only while one of its windows has the focus, so a
/// grab of keys on its root window is granted and worth nothing. A round trip or a few.
bool isXwayland(xcb_connection_t *connection, xcb_window_t root);

} // namespace ostrelle
