#pragma once

#include "records/KeyNames.h"
#include "records/StoredShortcuts.h"

#include <QObject>
#include <QPointer>
#include <QProperty>

#include <functional>
#include <optional>

namespace ostrelle {

class DefaultsDatabase;
class HotKeys;
class KeyboardLayout;
class ShortcutActions;
struct ActivationToken;

/// The key combinations that work whatever program is in front: one or none for each action, kept in the defaults
/// database and registered with the desktop. Main thread.
class ShortcutService : public QObject
{
    Q_OBJECT
public:
    enum class Registration {
        Unset,      ///< the action has no combination
        Registered, ///< pressing it works
        Refused     ///< it is kept and shown, and does nothing: the desktop has not given it, or not yet
    };
    Q_ENUM(Registration)

    /// What is stored is read here; nothing is registered before start().
    ShortcutService(DefaultsDatabase &defaults, HotKeys &hotKeys, const KeyboardLayout &layout,
                    ShortcutActions &actions, QObject *parent = nullptr);

    void start();
    /// Stores and registers it; none removes what the action had, for good.
    void set(const std::optional<KeyCombo> &combo, ShortcutAction action);

    KeyCombos combos() const { return m_combos.value(); }
    QBindable<KeyCombos> bindableCombos() { return &m_combos; }
    Registration registration(ShortcutAction action) const;
    /// Another action that has this combination.
    std::optional<ShortcutAction> conflict(const KeyCombo &combo, ShortcutAction excluding) const;
    /// As the user's layout prints them.
    KeyNames keyNames() const;

    /// While the user records a combination: one that is registered does not reach any window, so it is handed to
    /// `recorded` and does nothing else. Nothing is handed over when `recorder` is gone by then.
    void startRecording(QObject *recorder, std::function<void(const KeyCombo &combo)> recorded);
    void stopRecording();

Q_SIGNALS:
    /// The desktop has given or taken something by itself.
    void registrationsChanged();
    void keyNamesChanged();

private:
    void registerAll();
    void tellRefused();
    void pressed(int id, const ActivationToken &token);
    void perform(ShortcutAction action, const ActivationToken &token);

    DefaultsDatabase &m_defaults;
    HotKeys &m_hotKeys;
    const KeyboardLayout &m_layout;
    ShortcutActions &m_actions;
    QProperty<KeyCombos> m_combos;
    KeyCombos m_toldRefused;
    bool m_isToldOnlyByCommand = false;
    QPointer<QObject> m_recorder;
    std::function<void(const KeyCombo &combo)> m_recorded;
    bool m_isStarted = false;
};

} // namespace ostrelle
