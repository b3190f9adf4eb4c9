#pragma once

namespace ostrelle {

class RequestRouter;
class SettingsStore;

/// "settings.list", "settings.set", "settings.reset": the keys of the table of settings, live.
void addSettingsRequests(RequestRouter &router, SettingsStore &settings);

} // namespace ostrelle
