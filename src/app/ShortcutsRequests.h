#pragma once

#include <QJsonObject>

namespace ostrelle {

class DefaultsDatabase;
class RequestRouter;
class ShortcutService;

/// "shortcuts.list", "shortcuts.set" of a combination as it is typed, "shortcuts.unset". A combination that the desktop
/// refuses is set all the same; the answer's "state" tells it. Edits are on the disk, in `defaults`, before they are
/// answered.
void addShortcutsRequests(RequestRouter &router, ShortcutService &shortcuts, DefaultsDatabase &defaults);

/// Action to "registered", "refused" or "unset".
QJsonObject shortcutStates(const ShortcutService &shortcuts);

} // namespace ostrelle
