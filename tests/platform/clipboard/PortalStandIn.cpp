#include "PortalStandIn.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QFile>

namespace ostrelle {

namespace {

const auto kName = QStringLiteral("stand-in");

} // namespace

PortalStandIn::PortalStandIn()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, kName))
{
    qDBusRegisterMetaType<Settings>();
    m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal"), this, QDBusConnection::SubPath);
    m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    m_bus.registerService(QStringLiteral("org.freedesktop.portal.Documents"));
}

PortalStandIn::~PortalStandIn()
{
    QDBusConnection::disconnectFromBus(kName);
}

QString PortalStandIn::path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

bool PortalStandIn::handleMessage(const QDBusMessage &message, const QDBusConnection &bus)
{
    const QString member = message.member();
    const QString key = message.arguments().value(0).toString();
    if (member == QStringLiteral("ReadAll")) {
        return bus.send(message.createReply(QVariant::fromValue(settings)));
    }
    if (member == QStringLiteral("StartTransfer") && takesFiles) {
        const QString fresh = QStringLiteral("key-%1").arg(files.count());
        files[fresh];
        return bus.send(message.createReply(fresh));
    }
    if (member == QStringLiteral("AddFiles") && files.contains(key)) {
        addFiles(message.arguments());
        return bus.send(message.createReply());
    }
    if (member == QStringLiteral("RetrieveFiles") && files.contains(key)) {
        return bus.send(message.createReply(files[key]));
    }
    return bus.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such thing")));
}

void PortalStandIn::addFiles(const QVariantList &arguments)
{
    const auto descriptors = arguments.value(1).value<QDBusArgument>();
    descriptors.beginArray();
    while (!descriptors.atEnd()) {
        QDBusUnixFileDescriptor descriptor;
        descriptors >> descriptor;
        files[arguments.first().toString()]
            << QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor.fileDescriptor()));
    }
    descriptors.endArray();
}

} // namespace ostrelle
