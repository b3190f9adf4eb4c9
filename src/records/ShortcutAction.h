#pragma once

#include "records/KeyCombo.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// What a key combination can do from anywhere on the desktop, in the order of registration. The raw value is the
/// persisted identifier.
enum class ShortcutAction { ToggleNotch, OpenClipboard, PickColor };

inline constexpr std::array<ShortcutAction, 3> kAllShortcutActions = {
    ShortcutAction::ToggleNotch, ShortcutAction::OpenClipboard, ShortcutAction::PickColor};

QString rawValue(ShortcutAction action);
/// The action of exactly this raw value (case-sensitive), or nothing.
std::optional<ShortcutAction> shortcutActionFromRawValue(QStringView raw);

QString title(ShortcutAction action);
/// What the action has before the user has chosen anything.
std::optional<KeyCombo> defaultCombo(ShortcutAction action);

} // namespace ostrelle
