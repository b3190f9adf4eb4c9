#pragma once

#include "records/SettingsSection.h"

#include <functional>

namespace ostrelle {

class DefaultsDatabase;
class RequestRouter;
class SettingsStore;

/// "settings.list", "settings.set", "settings.reset": the keys of the table of settings, live; an edit is answered when
/// `defaults`, which holds them, is on the disk. "settings.open" (with "section") calls `open`.
void addSettingsRequests(RequestRouter &router, SettingsStore &settings, DefaultsDatabase &defaults,
                         const std::function<void(SettingsSection section)> &open);

} // namespace ostrelle
