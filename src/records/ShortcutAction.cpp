#include "records/ShortcutAction.h"

#include "records/RawValues.h"

namespace ostrelle {

QString rawValue(ShortcutAction action)
{
    switch (action) {
    case ShortcutAction::ToggleNotch:
        return QStringLiteral("toggleNotch");
    case ShortcutAction::OpenClipboard:
        return QStringLiteral("openClipboard");
    case ShortcutAction::PickColor:
        return QStringLiteral("pickColor");
    }
    Q_UNREACHABLE();
}

std::optional<ShortcutAction> shortcutActionFromRawValue(QStringView raw)
{
    return findByRawValue(kAllShortcutActions, raw);
}

QString title(ShortcutAction action)
{
    switch (action) {
    case ShortcutAction::ToggleNotch:
        return QStringLiteral("Open Notch");
    case ShortcutAction::OpenClipboard:
        return QStringLiteral("Open Clipboard");
    case ShortcutAction::PickColor:
        return QStringLiteral("Pick Color");
    }
    Q_UNREACHABLE();
}

std::optional<KeyCombo> defaultCombo(ShortcutAction action)
{
    constexpr quint32 kKeyC = 8;
    constexpr quint32 kKeyV = 9;
    switch (action) {
    case ShortcutAction::ToggleNotch:
        return std::nullopt;
    case ShortcutAction::OpenClipboard:
        return KeyCombo{kKeyV, KeyCombo::kCommand | KeyCombo::kShift};
    case ShortcutAction::PickColor:
        return KeyCombo{kKeyC, KeyCombo::kCommand | KeyCombo::kShift};
    }
    Q_UNREACHABLE();
}

} // namespace ostrelle
