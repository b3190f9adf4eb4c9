#include "ShortcutPortal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace ostrelle {

namespace {

const auto kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");

} // namespace

ShortcutPortal::ShortcutPortal()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("shortcut portal")))
{
    m_bus.registerVirtualObject(kPortalPath, this, QDBusConnection::SubPath);
}

ShortcutPortal::~ShortcutPortal()
{
    die();
    m_bus.unregisterObject(kPortalPath, QDBusConnection::UnregisterTree);
}

void ShortcutPortal::appear()
{
    m_bus.registerService(kPortalService);
}

void ShortcutPortal::die()
{
    m_bus.unregisterService(kPortalService);
}

bool ShortcutPortal::handleMessage(const QDBusMessage &message, const QDBusConnection &bus)
{
    const QVariantList arguments = message.arguments();
    if (message.member() == QStringLiteral("Get")) {
        return isKnown && bus.send(message.createReply(QVariant::fromValue(QDBusVariant(1U))));
    }
    if (message.member() == QStringLiteral("Close")) {
        closedSessions << message.path();
        return true;
    }
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    const auto options = qdbus_cast<QVariantMap>(arguments.value(arguments.size() - 1));
    m_request = QStringLiteral("%1/request/%2/%3")
                    .arg(kPortalPath, sender, options.value(QStringLiteral("handle_token")).toString());
    if (message.member() == QStringLiteral("CreateSession")) {
        sessions << QStringLiteral("%1/session/%2/%3")
                        .arg(kPortalPath, sender, options.value(QStringLiteral("session_handle_token")).toString());
        respond(0, {{QStringLiteral("session_handle"), sessions.last()}});
    } else if (message.member() == QStringLiteral("BindShortcuts") &&
               arguments.value(0).value<QDBusObjectPath>().path() == sessions.last()) {
        ++bound;
        shortcuts = PortalShortcut::listFrom(arguments.value(1));
    } else {
        return false;
    }
    return bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(m_request))));
}

void ShortcutPortal::grant(const QStringList &ids)
{
    respond(0, {{QStringLiteral("shortcuts"), listOf(ids)}});
}

void ShortcutPortal::refuse()
{
    respond(1, {});
}

void ShortcutPortal::change(const QStringList &ids)
{
    emitSignal(QStringLiteral("ShortcutsChanged"),
               {QVariant::fromValue(QDBusObjectPath(sessions.last())), listOf(ids)});
}

void ShortcutPortal::press(const QString &id, const QString &activationToken)
{
    emitSignal(QStringLiteral("Activated"),
               {QVariant::fromValue(QDBusObjectPath(sessions.last())), id, QVariant::fromValue(quint64{1234}),
                QVariantMap{{QStringLiteral("activation_token"), activationToken}}});
}

void ShortcutPortal::closeSession()
{
    m_bus.send(QDBusMessage::createSignal(sessions.last(), QStringLiteral("org.freedesktop.portal.Session"),
                                          QStringLiteral("Closed")));
}

QVariant ShortcutPortal::listOf(const QStringList &ids) const
{
    QList<PortalShortcut> list = shortcuts;
    for (PortalShortcut &shortcut : list) {
        shortcut.properties = {{QStringLiteral("trigger_description"),
                                ids.contains(shortcut.id) ? QStringLiteral("Some keys") : QString()}};
    }
    return PortalShortcut::argumentFor(list);
}

void ShortcutPortal::respond(uint response, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(m_request, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << response << results;
    m_bus.send(signal);
}

void ShortcutPortal::emitSignal(const QString &name, const QVariantList &arguments)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(kPortalPath, QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), name);
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace ostrelle
