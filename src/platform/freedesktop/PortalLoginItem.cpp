#include "platform/freedesktop/PortalLoginItem.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/PortalRequest.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QUuid>
#include <QVariantMap>

#include <utility>

namespace ostrelle {

namespace {

constexpr auto kBackgroundInterface = "org.freedesktop.portal.Background";

QString noPortal()
{
    return QStringLiteral("the desktop offers no way out of the sandbox");
}

} // namespace

PortalLoginItem::PortalLoginItem(AutostartEntry memory, QStringList command, QObject *parent)
    : LoginItem(parent)
    , m_memory(std::move(memory))
    , m_command(std::move(command))
{
}

PortalLoginItem::~PortalLoginItem() = default;

bool PortalLoginItem::isNeeded()
{
    return QFileInfo::exists(QStringLiteral("/.flatpak-info")) || !qEnvironmentVariableIsEmpty("SNAP");
}

void PortalLoginItem::setRegistered(bool isRegistered, QObject *context, Answer answer)
{
    const Answer earlier = std::exchange(m_answer, {});
    if (m_context && earlier)
        earlier(QStringLiteral("another request took its place"));
    m_context = context;
    m_answer = std::move(answer);
    m_isRegistered = isRegistered;
    ask();
}

void PortalLoginItem::ask()
{
    const int turn = ++m_turn;
    const auto use = [this, turn](QDBusConnection bus) {
        if (turn != m_turn) {
            return;
        }
        const QString token = QStringLiteral("ostrelle_") + QUuid::createUuid().toString(QUuid::Id128);
        m_requestPath = QStringLiteral("%1/request/%2/%3")
                            .arg(PortalRequest::path(), bus.baseService().mid(1).replace(u'.', u'_'), token);
        bus.connect(QString(), m_requestPath, PortalRequest::interface(), QStringLiteral("Response"), this,
                    SLOT(handleResponse(QDBusMessage)));
        QDBusMessage request = QDBusMessage::createMethodCall(PortalRequest::service(), PortalRequest::path(),
                                                              QString::fromLatin1(kBackgroundInterface),
                                                              QStringLiteral("RequestBackground"));
        request << QString()
                << QVariantMap{{QStringLiteral("handle_token"), token},
                               {QStringLiteral("reason"), QStringLiteral("Ostrelle rests at the top of the screen.")},
                               {QStringLiteral("autostart"), m_isRegistered},
                               {QStringLiteral("commandline"), m_command}};
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(request));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this, [this, turn](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            if (finished->isError() && turn == m_turn) {
                finish(finished->error().message());
            }
        });
    };
    sessionBus::whenConnected(this, use, [this, turn] {
        if (turn == m_turn) {
            finish(noPortal());
        }
    });
}

void PortalLoginItem::handleResponse(const QDBusMessage &message)
{
    if (message.path() != m_requestPath || message.signature() != QStringLiteral("ua{sv}")) {
        return;
    }
    const bool isGranted =
        message.arguments().at(0).toUInt() == 0 &&
        qdbus_cast<QVariantMap>(message.arguments().at(1)).value(QStringLiteral("autostart")).toBool();
    if (m_isRegistered) {
        finish(isGranted ? m_memory.enable() : m_memory.refuse());
    } else {
        finish(m_memory.remove());
    }
}

void PortalLoginItem::finish(const QString &problem)
{
    m_requestPath.clear();
    const Answer answer = std::exchange(m_answer, {});
    if (m_context && answer) {
        answer(problem);
    }
    Q_EMIT statusChanged();
}

} // namespace ostrelle
