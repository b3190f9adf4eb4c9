#include "platform/BusServices.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QStringList>

namespace ostrelle {
namespace {

constexpr auto kPortal = "org.freedesktop.portal.Desktop";

} // namespace

BusServices BusServices::look()
{
    // The library would start a bus where no address says that there is one.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") && !qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
        return {};
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return {};
    const QString portal = QString::fromLatin1(kPortal);
    const bool isRunning = bus.interface()->isServiceRegistered(portal).value();
    return {.hasBus = true,
            .hasPortal = isRunning || bus.interface()->activatableServiceNames().value().contains(portal)};
}

} // namespace ostrelle
