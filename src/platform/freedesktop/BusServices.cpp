#include "platform/BusServices.h"

#include "platform/freedesktop/PortalLoginItem.h"
#include "platform/freedesktop/PortalRequest.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QXmlStreamReader>

#include <optional>

namespace ostrelle {
namespace {

constexpr int kAnswerDeadline = 3000; // ms; a portal that the bus has to start first takes one or two

/// Whether it runs, or would start when it is asked for.
bool isOffered(const QDBusConnectionInterface &bus, const QString &service)
{
    return bus.isServiceRegistered(service).value() || bus.activatableServiceNames().value().contains(service);
}

/// The methods in an object's description as the bus has it, with the names of their interfaces.
QStringList methodsIn(const QString &description)
{
    QStringList methods;
    QXmlStreamReader xml(description);
    QString interface;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = [&xml] { return xml.attributes().value(QLatin1StringView("name")).toString(); };
        if (xml.name() == QLatin1StringView("interface"))
            interface = name();
        else if (xml.name() == QLatin1StringView("method"))
            methods.append(interface + u'.' + name());
    }
    return methods;
}

/// Which methods of portals an object has; nothing when it does not answer.
std::optional<QStringList> methodsOf(const QDBusConnection &bus, const QString &service, const QString &path)
{
    const QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    const QDBusReply<QString> description = bus.call(question, QDBus::Block, kAnswerDeadline);
    if (!description.isValid())
        return std::nullopt;
    const auto prefix = QLatin1StringView("org.freedesktop.portal.");
    QStringList found;
    for (const QString &method : methodsIn(description)) {
        if (method.startsWith(prefix))
            found.append(method.mid(prefix.size()));
    }
    return found;
}

} // namespace

BusServices BusServices::look()
{
    BusServices services;
    services.isSandboxed = PortalLoginItem::isNeeded();
    // The library would start a bus where no address says that there is one.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") && !qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
        return services;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return services;
    bus.interface()->setTimeout(kAnswerDeadline);
    services.hasBus = true;
    const QString desktop = PortalRequest::service();
    if (isOffered(*bus.interface(), desktop)) {
        const auto offered = methodsOf(bus, desktop, PortalRequest::path());
        services.portal = offered ? Portal::Answers : Portal::Silent;
        services.portalMethods = offered.value_or(QStringList());
    }
    const auto documents = QStringLiteral("org.freedesktop.portal.Documents");
    if (isOffered(*bus.interface(), documents))
        services.portalMethods +=
            methodsOf(bus, documents, QStringLiteral("/org/freedesktop/portal/documents")).value_or(QStringList());
    return services;
}

} // namespace ostrelle
