#pragma once

#include "records/KeyCombo.h"
#include "records/StoredShortcuts.h"

#include <QJsonObject>
#include <QString>

#include <variant>

namespace ostrelle {

class KeyNames;

// Combinations as they are typed: "Shift+Super+V".

/// Modifiers in the order Control, Alt, Shift, Super, then the key's name.
QString keyComboText(const KeyCombo &combo, const KeyNames &names);

/// Why a typed combination cannot be set.
struct KeyComboProblem
{
    enum class Kind {
        Meaningless, ///< no combination at all
        Taken        ///< another action has it
    };
    Kind kind;
    QString message; ///< one line
};

/// What the user typed, for `action` beside what the others have. Case does not matter, and the modifiers come in any
/// order. At least one is needed: a bare key would be lost to every other program.
std::variant<KeyCombo, KeyComboProblem> keyComboFromText(const QString &text, const KeyNames &names,
                                                         ShortcutAction action, const KeyCombos &combos);

/// As commands list it: "action", "title", "combo" as it is typed, "keyCode", "carbonModifiers"; the last three are
/// null when it is not set.
QJsonObject shortcutRecord(ShortcutAction action, const KeyCombos &combos, const KeyNames &names);

} // namespace ostrelle
