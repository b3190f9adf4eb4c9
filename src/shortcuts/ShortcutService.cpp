#include "shortcuts/ShortcutService.h"

#include "platform/HotKeys.h"
#include "platform/KeyboardLayout.h"
#include "records/KeyComboText.h"
#include "shortcuts/KeyEventCombo.h"
#include "shortcuts/ShortcutActions.h"

#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcShortcuts, "ostrelle.shortcuts", QtWarningMsg)

int idOf(ShortcutAction action)
{
    return static_cast<int>(action) + 1;
}

} // namespace

ShortcutService::ShortcutService(DefaultsDatabase &defaults, HotKeys &hotKeys, const KeyboardLayout &layout,
                                 ShortcutActions &actions, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_hotKeys(hotKeys)
    , m_layout(layout)
    , m_actions(actions)
    , m_combos(loadKeyCombos(defaults))
{
}

void ShortcutService::start()
{
    if (std::exchange(m_isStarted, true))
        return;
    connect(&m_hotKeys, &HotKeys::pressed, this, &ShortcutService::pressed);
    connect(&m_hotKeys, &HotKeys::stateChanged, this, [this] {
        tellRefused();
        Q_EMIT registrationsChanged();
    });
    connect(&m_layout, &KeyboardLayout::changed, this, &ShortcutService::keyNamesChanged);
    registerAll();
}

void ShortcutService::set(const std::optional<KeyCombo> &combo, ShortcutAction action)
{
    KeyCombos combos = m_combos.value();
    if (combo)
        combos[action] = *combo;
    else
        combos.remove(action);
    storeKeyCombo(m_defaults, action, combo);
    m_toldRefused.remove(action);
    m_combos = combos;
    if (m_isStarted)
        registerAll();
}

ShortcutService::Registration ShortcutService::registration(ShortcutAction action) const
{
    if (!m_combos.value().contains(action))
        return Registration::Unset;
    return m_hotKeys.state(idOf(action)) == HotKeys::State::Granted ? Registration::Registered : Registration::Refused;
}

std::optional<ShortcutAction> ShortcutService::conflict(const KeyCombo &combo, ShortcutAction excluding) const
{
    return ostrelle::conflict(m_combos.value(), combo, excluding);
}

KeyNames ShortcutService::keyNames() const
{
    return KeyNames(m_layout.keyNames());
}

void ShortcutService::registerAll()
{
    QList<HotKey> keys;
    const KeyCombos combos = m_combos.value();
    for (auto entry = combos.begin(); entry != combos.end(); ++entry)
        keys.append({idOf(entry.key()), entry->keyCode, toolkitModifiers(entry->carbonModifiers), rawValue(entry.key()),
                     title(entry.key())});
    m_hotKeys.set(keys);
    tellRefused();
}

void ShortcutService::tellRefused()
{
    const KeyCombos combos = m_combos.value();
    for (auto entry = combos.begin(); entry != combos.end(); ++entry) {
        const auto state = m_hotKeys.state(idOf(entry.key()));
        if (state == HotKeys::State::OnlyByCommand && !std::exchange(m_isToldOnlyByCommand, true))
            qCWarning(lcShortcuts, "This desktop hands out no shortcuts; bind \"ostrelle toggle\" and "
                                   "\"ostrelle open clipboard\" in its settings");
        if (state == HotKeys::State::Granted)
            m_toldRefused.remove(entry.key());
        if (state != HotKeys::State::Refused || comboOf(m_toldRefused, entry.key()) == *entry)
            continue;
        m_toldRefused[entry.key()] = *entry;
        qCWarning(lcShortcuts, "%s does not work for \"%s\": another program may hold it",
                  qUtf8Printable(keyComboText(*entry, keyNames())), qUtf8Printable(title(entry.key())));
    }
}

void ShortcutService::startRecording(QObject *recorder, std::function<void(const KeyCombo &combo)> recorded)
{
    m_recorder = recorder;
    m_recorded = std::move(recorded);
}

void ShortcutService::stopRecording()
{
    m_recorder.clear();
}

void ShortcutService::pressed(int id, const ActivationToken &token)
{
    const auto action = std::find_if(kAllShortcutActions.begin(), kAllShortcutActions.end(),
                                     [id](ShortcutAction one) { return idOf(one) == id; });
    if (action == kAllShortcutActions.end())
        return;
    if (!m_recorder) {
        perform(*action, token);
    } else if (const auto combo = comboOf(m_combos.value(), *action)) {
        const auto recorded = m_recorded; // another recording may begin from inside
        recorded(*combo);
    }
}

void ShortcutService::perform(ShortcutAction action, const ActivationToken &token)
{
    switch (action) {
    case ShortcutAction::ToggleNotch:
        m_actions.toggleNotch(token);
        break;
    case ShortcutAction::OpenClipboard:
        m_actions.openClipboard(token);
        break;
    case ShortcutAction::PickColor:
        m_actions.pickColor(token);
        break;
    }
}

} // namespace ostrelle
