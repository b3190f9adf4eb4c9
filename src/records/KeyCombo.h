#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace ostrelle {

class KeyNames;

/// A key with modifiers. The key is a place on the board, whatever the layout prints there: its code is the one that an
/// ANSI board's virtual key has (0 = A, 8 = C, 9 = V, 36 = Return). Command is this desktop's Super key, Option its
/// Alt.
struct KeyCombo
{
    static constexpr quint32 kCommand = 0x0100;
    static constexpr quint32 kShift = 0x0200;
    static constexpr quint32 kOption = 0x0800;
    static constexpr quint32 kControl = 0x1000;

    quint32 keyCode = 0;
    quint32 carbonModifiers = 0; ///< of the four above

    bool operator==(const KeyCombo &) const = default;
};

/// "⌃⌥⇧⌘V": the modifiers in this order, then the key's name.
QString display(const KeyCombo &combo, const KeyNames &names);

/// The stored form: {"keyCode": 9, "carbonModifiers": 768}, or null for a combination that the user removed.
QByteArray encodedKeyCombo(const std::optional<KeyCombo> &combo);
/// Nothing for null, and for what cannot be decoded.
std::optional<KeyCombo> decodedKeyCombo(const QByteArray &json);

} // namespace ostrelle
