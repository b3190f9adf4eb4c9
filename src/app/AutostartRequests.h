#pragma once

namespace ostrelle {

class LaunchAtLogin;
class RequestRouter;

/// "autostart.on", "autostart.off" (answered when it is done), "autostart.status" (a word).
void addAutostartRequests(RequestRouter &router, LaunchAtLogin &launch);

} // namespace ostrelle
