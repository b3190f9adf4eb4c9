#pragma once

namespace ostrelle {

/// Whether the X server that DISPLAY names lets this program in. Connects and leaves again.
bool isX11DisplayReachable();

} // namespace ostrelle
