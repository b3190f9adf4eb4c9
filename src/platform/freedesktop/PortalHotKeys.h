#pragma once

#include "platform/HotKeys.h"

#include <QDBusConnection>
#include <QMap>
#include <QStringList>

#include <memory>
#include <optional>

class QDBusMessage;

namespace ostrelle {

class KeyboardLayout;
class PortalShortcutSession;

/// Hot keys through the desktop's portal, for a display server that hands out no keys by itself. The user decides about
/// each set, also later on. Without such a portal they are OnlyByCommand.
class PortalHotKeys final : public HotKeys
{
    Q_OBJECT
public:
    explicit PortalHotKeys(const KeyboardLayout &layout, QObject *parent = nullptr);
    ~PortalHotKeys() override;

    void set(const QList<HotKey> &keys) override;
    std::optional<State> state(int id) const override;

private Q_SLOTS:
    void handleOwnerChange(const QDBusMessage &message);

private:
    enum class Portal { Unknown, Sought, There, Missing };

    void seekPortal();
    void portalFound(const QDBusConnection &bus);
    void startSession();
    void press(const QString &name, const ActivationToken &token);
    void setAll(State state);
    void setStates(const QMap<int, State> &states);

    const KeyboardLayout &m_layout;
    Portal m_portal = Portal::Unknown;
    std::optional<QDBusConnection> m_bus; ///< while the portal is there
    std::unique_ptr<PortalShortcutSession> m_session;
    QList<HotKey> m_keys;
    QMap<int, State> m_states;
};

} // namespace ostrelle
