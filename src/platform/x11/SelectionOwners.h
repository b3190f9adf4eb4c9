#pragma once

#include <xcb/xcb.h>

namespace ostrelle {

class WatchConnection;

/// Has XFixes announce every change of the selection's owner, and its end with the owner's window or program. Returns
/// the events' number, 0 when the server cannot. Doing it twice is the same as once.
int watchSelectionOwners(WatchConnection &watch, xcb_atom_t selection);

} // namespace ostrelle
