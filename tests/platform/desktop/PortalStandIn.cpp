#include "PortalStandIn.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace ostrelle {

namespace {

const auto kService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");

} // namespace

PortalStandIn::PortalStandIn()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal")))
{
    m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath);
}

PortalStandIn::~PortalStandIn()
{
    die();
    m_bus.unregisterObject(kPath, QDBusConnection::UnregisterTree);
}

void PortalStandIn::appear()
{
    m_bus.registerService(kService);
}

void PortalStandIn::die()
{
    m_bus.unregisterService(kService);
}

bool PortalStandIn::handleMessage(const QDBusMessage &message, const QDBusConnection &bus)
{
    const QVariantList arguments = message.arguments();
    if (message.member() == QStringLiteral("Get")) {
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(version))));
    }
    if (message.member() == QStringLiteral("Close")) {
        closed += message.path() == m_request ? 1 : 0;
        return true;
    }
    const QStringList known{QStringLiteral("OpenFile"), QStringLiteral("OpenURI")};
    if (!known.contains(message.member()) || manner == Manner::RefusesToOpen) {
        return false;
    }
    ++opened;
    if (manner == Manner::Hangs) {
        return true;
    }
    parentWindow = arguments.at(0).toString();
    title = arguments.at(1).toString();
    options = qdbus_cast<QVariantMap>(arguments.at(2));
    m_request = QStringLiteral("%1/request/%2/%3")
                    .arg(kPath, message.service().mid(1).replace(u'.', u'_'),
                         options.value(QStringLiteral("handle_token")).toString());
    if (manner == Manner::ShowsNothing) {
        respond(2); // before the call itself is answered, as may happen
    }
    return bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(m_request))));
}

void PortalStandIn::respond(uint response, const QStringList &uris)
{
    emitResponse({response, QVariantMap{{QStringLiteral("uris"), uris}}});
}

void PortalStandIn::respondWithGarbage()
{
    emitResponse({QStringLiteral("garbage")});
}

void PortalStandIn::emitResponse(const QVariantList &arguments)
{
    QDBusMessage signal = QDBusMessage::createSignal(m_request, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace ostrelle
