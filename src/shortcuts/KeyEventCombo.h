#pragma once

#include "records/KeyCombo.h"

#include <optional>

class QKeyEvent;

namespace ostrelle {

class KeyboardLayout;

/// The combination that was pressed; nothing without any of the four modifiers, or for a key that no board has. Locks
/// do not count.
std::optional<KeyCombo> keyComboFrom(const QKeyEvent &event, const KeyboardLayout &layout);

Qt::KeyboardModifiers toolkitModifiers(quint32 carbonModifiers);

} // namespace ostrelle
