#pragma once

#include "records/KeyCombo.h"
#include "records/ShortcutAction.h"

#include <QMap>

#include <optional>

namespace ostrelle {

class DefaultsDatabase;

/// The combination of each action; an action without one is missing.
using KeyCombos = QMap<ShortcutAction, KeyCombo>;

/// An action that nothing is stored for has its default; one that was removed, or cannot be decoded, has none.
KeyCombos loadKeyCombos(const DefaultsDatabase &database);
void storeKeyCombo(DefaultsDatabase &database, ShortcutAction action, const std::optional<KeyCombo> &combo);

std::optional<KeyCombo> comboOf(const KeyCombos &combos, ShortcutAction action);
/// An action other than `excluding` that has this combination.
std::optional<ShortcutAction> conflict(const KeyCombos &combos, const KeyCombo &combo, ShortcutAction excluding);

} // namespace ostrelle
