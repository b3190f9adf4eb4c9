#pragma once

#include "records/SettingsSection.h"

#include <functional>

namespace ostrelle {

class RequestRouter;
class SettingsStore;

/// "settings.list", "settings.set", "settings.reset": the keys of the table of settings, live. "settings.open" (with
/// "section") calls `open`.
void addSettingsRequests(RequestRouter &router, SettingsStore &settings,
                         const std::function<void(SettingsSection section)> &open);

} // namespace ostrelle
