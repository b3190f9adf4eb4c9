#include "shortcuts/KeyEventCombo.h"

#include "platform/KeyboardLayout.h"

#include <QKeyEvent>

#include <array>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::array<std::pair<quint32, Qt::KeyboardModifier>, 4> kModifiers = {
    {{KeyCombo::kCommand, Qt::MetaModifier},
     {KeyCombo::kShift, Qt::ShiftModifier},
     {KeyCombo::kOption, Qt::AltModifier},
     {KeyCombo::kControl, Qt::ControlModifier}}};

} // namespace

std::optional<KeyCombo> keyComboFrom(const QKeyEvent &event, const KeyboardLayout &layout)
{
    KeyCombo combo;
    for (const auto &[bit, modifier] : kModifiers) {
        if (event.modifiers().testFlag(modifier))
            combo.carbonModifiers |= bit;
    }
    const std::optional<quint32> keyCode = layout.keyCodeOf(event);
    if (!combo.carbonModifiers || !keyCode)
        return std::nullopt;
    combo.keyCode = *keyCode;
    return combo;
}

Qt::KeyboardModifiers toolkitModifiers(quint32 carbonModifiers)
{
    Qt::KeyboardModifiers modifiers;
    for (const auto &[bit, modifier] : kModifiers)
        modifiers.setFlag(modifier, carbonModifiers & bit);
    return modifiers;
}

} // namespace ostrelle
