#include "platform/freedesktop/PortalHotKeys.h"

#include "foundation/MakeChild.h"
#include "platform/KeyboardLayout.h"
#include "platform/freedesktop/PortalRequest.h"
#include "platform/freedesktop/PortalShortcutSession.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <utility>

namespace ostrelle {

namespace {

constexpr int kQuestionDeadline = 3000; // ms; the bus may have to start the portal

} // namespace

PortalHotKeys::PortalHotKeys(const KeyboardLayout &layout, QObject *parent)
    : HotKeys(parent)
    , m_layout(layout)
{
}

PortalHotKeys::~PortalHotKeys() = default;

void PortalHotKeys::set(const QList<HotKey> &keys)
{
    const QList<HotKey> before = std::exchange(m_keys, keys);
    // Asking again may cost the user a dialog.
    if (m_session && before == keys && !m_states.values().contains(State::Refused)) {
        return;
    }
    const State state = m_portal == Portal::Missing ? State::OnlyByCommand : State::UserDecides;
    m_states.clear();
    for (const HotKey &key : keys) {
        m_states[key.id] = state;
    }
    if (m_portal == Portal::There) {
        startSession();
    } else if (m_portal == Portal::Unknown) {
        seekPortal();
    }
}

std::optional<HotKeys::State> PortalHotKeys::state(int id) const
{
    const auto found = m_states.find(id);
    return found == m_states.end() ? std::nullopt : std::optional(*found);
}

void PortalHotKeys::seekPortal()
{
    m_portal = Portal::Sought;
    const auto missing = [this] {
        m_portal = Portal::Missing;
        setAll(State::OnlyByCommand);
    };
    const auto ask = [this, missing](const QDBusConnection &bus) {
        QDBusMessage question =
            QDBusMessage::createMethodCall(PortalRequest::service(), PortalRequest::path(),
                                           QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        question << QStringLiteral("org.freedesktop.portal.GlobalShortcuts") << QStringLiteral("version");
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(question, kQuestionDeadline));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this,
                [this, bus, missing](QDBusPendingCallWatcher *finished) {
                    finished->deleteLater();
                    if (finished->isError()) {
                        missing();
                    } else {
                        portalFound(bus);
                    }
                });
    };
    sessionBus::whenConnected(this, ask, missing);
}

void PortalHotKeys::portalFound(const QDBusConnection &bus)
{
    m_portal = Portal::There;
    m_bus = bus;
    m_bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                   QStringLiteral("NameOwnerChanged"), {PortalRequest::service()}, QString(), this,
                   SLOT(handleOwnerChange(QDBusMessage)));
    startSession();
}

void PortalHotKeys::startSession()
{
    m_session.reset(); // gives back what the former one has
    if (m_keys.isEmpty()) {
        return;
    }
    const QMap<quint32, QString> names = m_layout.keyNames();
    QList<PortalShortcut> shortcuts;
    for (const HotKey &key : std::as_const(m_keys)) {
        shortcuts << PortalShortcut::from(key, names.value(key.keyCode));
    }
    m_session = std::make_unique<PortalShortcutSession>(*m_bus, shortcuts);
    connect(m_session.get(), &PortalShortcutSession::pressed, this, &PortalHotKeys::press);
    connect(m_session.get(), &PortalShortcutSession::decided, this, [this](const QStringList &bound) {
        QMap<int, State> states;
        for (const HotKey &key : std::as_const(m_keys)) {
            states[key.id] = bound.contains(key.name) ? State::Granted : State::Refused;
        }
        setStates(states);
    });
}

void PortalHotKeys::press(const QString &name, const ActivationToken &token)
{
    const auto key =
        std::find_if(m_keys.cbegin(), m_keys.cend(), [&name](const HotKey &one) { return one.name == name; });
    if (key != m_keys.cend()) {
        Q_EMIT pressed(key->id, token);
    }
}

void PortalHotKeys::handleOwnerChange(const QDBusMessage &message)
{
    const bool isThere = !message.arguments().value(2).toString().isEmpty();
    setAll(isThere ? State::UserDecides : State::Refused);
    if (isThere) {
        startSession();
    }
}

void PortalHotKeys::setAll(State state)
{
    QMap<int, State> states;
    for (const HotKey &key : std::as_const(m_keys)) {
        states[key.id] = state;
    }
    setStates(states);
}

void PortalHotKeys::setStates(const QMap<int, State> &states)
{
    const QMap<int, State> before = std::exchange(m_states, states);
    for (auto entry = states.begin(); entry != states.end(); ++entry) {
        if (before.value(entry.key(), State::UserDecides) != *entry) {
            Q_EMIT stateChanged(entry.key()); // whoever hears of it may set others
        }
    }
}

} // namespace ostrelle
