#include "records/StoredShortcuts.h"

#include "foundation/DefaultsDatabase.h"

namespace ostrelle {

namespace {

QString storageKey(ShortcutAction action)
{
    return QStringLiteral("shortcut.") + rawValue(action);
}

} // namespace

KeyCombos loadKeyCombos(const DefaultsDatabase &database)
{
    KeyCombos combos;
    for (const ShortcutAction action : kAllShortcutActions) {
        const auto stored = database.data(storageKey(action));
        if (const auto combo = stored ? decodedKeyCombo(*stored) : defaultCombo(action))
            combos.insert(action, *combo);
    }
    return combos;
}

void storeKeyCombo(DefaultsDatabase &database, ShortcutAction action, const std::optional<KeyCombo> &combo)
{
    database.setData(storageKey(action), encodedKeyCombo(combo));
}

std::optional<KeyCombo> comboOf(const KeyCombos &combos, ShortcutAction action)
{
    const auto found = combos.find(action);
    return found == combos.end() ? std::nullopt : std::optional(*found);
}

std::optional<ShortcutAction> conflict(const KeyCombos &combos, const KeyCombo &combo, ShortcutAction excluding)
{
    for (auto entry = combos.begin(); entry != combos.end(); ++entry) {
        if (entry.key() != excluding && *entry == combo)
            return entry.key();
    }
    return std::nullopt;
}

} // namespace ostrelle
