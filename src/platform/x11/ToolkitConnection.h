#pragma once

#include <xcb/xcb.h>

namespace ostrelle {

/// The toolkit's own connection; null on another display server or before the application object. What must be in order
/// with the toolkit's drawing and resizing goes here; errors there are printed, so no request may name a foreign
/// window.
xcb_connection_t *toolkitConnection();

} // namespace ostrelle
