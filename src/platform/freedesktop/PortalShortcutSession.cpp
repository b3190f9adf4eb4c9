#include "platform/freedesktop/PortalShortcutSession.h"

#include "platform/freedesktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace ostrelle {

namespace {

QString portal()
{
    return QStringLiteral("GlobalShortcuts");
}

QString sessionInterface()
{
    return QStringLiteral("org.freedesktop.portal.Session");
}

} // namespace

PortalShortcutSession::PortalShortcutSession(QDBusConnection bus, QList<PortalShortcut> shortcuts)
    : m_bus(std::move(bus))
    , m_shortcuts(std::move(shortcuts))
{
    const QString interface = QStringLiteral("org.freedesktop.portal.") + portal();
    m_bus.connect(QString(), PortalRequest::path(), interface, QStringLiteral("Activated"), this,
                  SLOT(handleActivated(QDBusMessage)));
    m_bus.connect(QString(), PortalRequest::path(), interface, QStringLiteral("ShortcutsChanged"), this,
                  SLOT(handleChanged(QDBusMessage)));
    const QVariantMap options{{QStringLiteral("session_handle_token"), PortalRequest::freshToken()}};
    m_request = std::make_unique<PortalRequest>(
        m_bus, portal(), QStringLiteral("CreateSession"), QVariantList(), options,
        [this](const std::optional<QVariantMap> &results) {
            m_request.release()->deleteLater();
            m_path = results ? results->value(QStringLiteral("session_handle")).toString() : QString();
            if (m_path.isEmpty()) {
                decide({});
            } else {
                bind();
            }
        });
}

PortalShortcutSession::~PortalShortcutSession()
{
    if (!m_path.isEmpty()) {
        m_bus.send(QDBusMessage::createMethodCall(PortalRequest::service(), m_path, sessionInterface(),
                                                  QStringLiteral("Close")));
    }
}

void PortalShortcutSession::bind()
{
    m_bus.connect(QString(), m_path, sessionInterface(), QStringLiteral("Closed"), this, SLOT(handleClosed()));
    // No parent window: the desktop's dialog cannot be placed relative to a panel that it does not know.
    const QVariantList arguments{QVariant::fromValue(QDBusObjectPath(m_path)), PortalShortcut::argumentFor(m_shortcuts),
                                 QString()};
    m_request = std::make_unique<PortalRequest>(
        m_bus, portal(), QStringLiteral("BindShortcuts"), arguments, QVariantMap(),
        [this](const std::optional<QVariantMap> &results) {
            m_request.release()->deleteLater();
            decide(results ? PortalShortcut::listFrom(results->value(QStringLiteral("shortcuts")))
                           : QList<PortalShortcut>());
        });
}

void PortalShortcutSession::decide(const QList<PortalShortcut> &shortcuts)
{
    QStringList bound;
    for (const PortalShortcut &shortcut : shortcuts) {
        if (shortcut.isBound()) {
            bound << shortcut.id;
        }
    }
    Q_EMIT decided(bound);
}

bool PortalShortcutSession::isOurs(const QDBusMessage &message) const
{
    return !m_path.isEmpty() && message.arguments().value(0).value<QDBusObjectPath>().path() == m_path;
}

void PortalShortcutSession::handleActivated(const QDBusMessage &message)
{
    if (message.signature() != QStringLiteral("osta{sv}") || !isOurs(message)) {
        return;
    }
    const auto options = qdbus_cast<QVariantMap>(message.arguments().at(3));
    Q_EMIT pressed(message.arguments().at(1).toString(),
                   {options.value(QStringLiteral("activation_token")).toString()});
}

void PortalShortcutSession::handleChanged(const QDBusMessage &message)
{
    if (message.signature() == QStringLiteral("oa(sa{sv})") && isOurs(message)) {
        decide(PortalShortcut::listFrom(message.arguments().at(1)));
    }
}

void PortalShortcutSession::handleClosed()
{
    m_path.clear();
    decide({});
}

} // namespace ostrelle
