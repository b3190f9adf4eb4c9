#include "platform/freedesktop/PortalRequest.h"

#include "foundation/MakeChild.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

#include <utility>

namespace ostrelle {

namespace {

constexpr int kCallDeadline = 3000; // ms, of the call, not of the user; the bus may have to start the portal

// First argument of Request's Response.
constexpr uint kGranted = 0;
constexpr uint kCancelled = 1;
constexpr uint kOtherwise = 2;

} // namespace

PortalRequest::PortalRequest(QDBusConnection bus, const QString &portal, const QString &member,
                             const QVariantList &arguments, QVariantMap options, Answer answer)
    : m_bus(std::move(bus))
    , m_answer(std::move(answer))
{
    const QString token = freshToken();
    m_requestPath =
        QStringLiteral("%1/request/%2/%3").arg(path(), m_bus.baseService().mid(1).replace(u'.', u'_'), token);
    // Before the call, so that no answer can come before somebody listens. Any sender, since naming one would make the
    // bus be asked, and waited for, who that is.
    m_bus.connect(QString(), m_requestPath, interface(), QStringLiteral("Response"), this,
                  SLOT(handleResponse(QDBusMessage)));
    options.insert(QStringLiteral("handle_token"), token);
    QDBusMessage call =
        QDBusMessage::createMethodCall(service(), path(), QStringLiteral("org.freedesktop.portal.") + portal, member);
    call.setArguments(arguments);
    call << options;
    auto &watcher = makeChild<QDBusPendingCallWatcher>(this, m_bus.asyncCall(call, kCallDeadline));
    connect(&watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (finished->isError()) {
            finish(std::nullopt);
        }
    });
}

PortalRequest::~PortalRequest()
{
    if (m_answer) {
        m_bus.send(QDBusMessage::createMethodCall(service(), m_requestPath, interface(), QStringLiteral("Close")));
    }
}

QString PortalRequest::service()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString PortalRequest::path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString PortalRequest::interface()
{
    return QStringLiteral("org.freedesktop.portal.Request");
}

QString PortalRequest::freshToken()
{
    return QStringLiteral("ostrelle_") + QUuid::createUuid().toString(QUuid::Id128);
}

void PortalRequest::handleResponse(const QDBusMessage &message)
{
    const bool isSound = message.signature() == QStringLiteral("ua{sv}");
    const uint response = isSound ? message.arguments().constFirst().toUInt() : kOtherwise;
    m_wasCancelled = response == kCancelled;
    finish(response == kGranted ? std::optional(qdbus_cast<QVariantMap>(message.arguments().at(1))) : std::nullopt);
}

void PortalRequest::finish(std::optional<QVariantMap> results)
{
    if (const Answer answer = std::exchange(m_answer, {})) {
        answer(std::move(results));
    }
}

} // namespace ostrelle
