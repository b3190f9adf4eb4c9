#include "platform/freedesktop/BusApplication.h"

#include "platform/freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <utility>

namespace ostrelle {

namespace {

constexpr auto kInterface = "org.freedesktop.Application";
constexpr uint kDoNotQueue = 4; // of RequestName: another program of that name keeps it

constexpr auto kIntrospection = R"(<interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
  <method name="Open">
    <arg type="as" name="uris" direction="in"/><arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg type="s" name="action_name" direction="in"/><arg type="av" name="parameter" direction="in"/>
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
</interface>
)";

ActivationToken tokenIn(const QVariant &platformData)
{
    const auto values = qdbus_cast<QVariantMap>(platformData);
    const QString token = values.value(QStringLiteral("activation-token")).toString();
    return {token.isEmpty() ? values.value(QStringLiteral("desktop-startup-id")).toString() : token};
}

/// The object at the program's path. Its owner outlives it.
class ApplicationObject final : public QDBusVirtualObject
{
public:
    ApplicationObject(DesktopRequests &requests, QStringList actions)
        : m_requests(requests)
        , m_actions(std::move(actions))
    {
    }

    QString introspect(const QString &) const override { return QString::fromLatin1(kIntrospection); }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.interface() != QLatin1StringView(kInterface) && !message.interface().isEmpty())
            return false;
        const QVariantList arguments = message.arguments();
        if (message.member() == QStringLiteral("Activate") && message.signature() == QStringLiteral("a{sv}")) {
            bus.send(message.createReply());
            Q_EMIT m_requests.activated(tokenIn(arguments.at(0)));
            return true;
        }
        if (message.member() == QStringLiteral("ActivateAction") && message.signature() == QStringLiteral("sava{sv}"))
            return act(arguments.at(0).toString(), tokenIn(arguments.at(2)), message, bus);
        if (message.member() == QStringLiteral("Open")) {
            bus.send(message.createErrorReply(QDBusError::NotSupported, QStringLiteral("It opens no files")));
            return true;
        }
        return false;
    }

private:
    bool act(const QString &action, const ActivationToken &token, const QDBusMessage &message,
             const QDBusConnection &bus)
    {
        if (!m_actions.contains(action)) {
            bus.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action")));
            return true;
        }
        bus.send(message.createReply());
        Q_EMIT m_requests.actionRequested(action, token);
        return true;
    }

    DesktopRequests &m_requests;
    QStringList m_actions;
};

/// "/org/example/Name" of "org.example.Name".
QString objectPath(const QString &applicationId)
{
    return u'/' + QString(applicationId).replace(u'.', u'/').replace(u'-', u'_');
}

QDBusMessage busCall(const QString &member, const QVariantList &arguments)
{
    const QString name = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/DBus"), name, member);
    call.setArguments(arguments);
    return call;
}

} // namespace

std::unique_ptr<DesktopRequests> DesktopRequests::create(const QString &applicationId, const QStringList &actions)
{
    return std::make_unique<BusApplication>(applicationId, actions);
}

BusApplication::BusApplication(QString applicationId, const QStringList &actions)
    : m_applicationId(std::move(applicationId))
    , m_object(std::make_unique<ApplicationObject>(*this, actions))
{
    sessionBus::whenConnected(this, [this](const QDBusConnection &bus) { appear(bus); });
}

BusApplication::~BusApplication()
{
    if (!m_bus)
        return;
    m_bus->unregisterObject(objectPath(m_applicationId));
    m_bus->send(busCall(QStringLiteral("ReleaseName"), {m_applicationId}));
}

void BusApplication::appear(QDBusConnection bus)
{
    // The object first: what started the program asks as soon as the name is there.
    bus.registerVirtualObject(objectPath(m_applicationId), m_object.get());
    bus.send(busCall(QStringLiteral("RequestName"), {m_applicationId, kDoNotQueue}));
    m_bus = bus;
}

} // namespace ostrelle
