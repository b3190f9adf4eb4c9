#include "platform/freedesktop/PortalFileRequest.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "platform/freedesktop/PortalFileFilter.h"
#include "platform/freedesktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QUrl>
#include <QUuid>
#include <QVariantMap>

#include <utility>

namespace ostrelle {

namespace {

using namespace std::chrono_literals;

constexpr int kDeadline = 3000; // ms, of each call; a portal that the bus has to start takes about one second
constexpr uint kVersionWithFolders = 3;
constexpr auto kChooserInterface = "org.freedesktop.portal.FileChooser";

/// First argument of Request's Response.
enum class Response : uint { Chosen = 0, Cancelled = 1, Other = 2 };

/// A backend that can show nothing, having no display for one, answers Other like one whose window was closed by its
/// frame; only that it does so at once tells it apart.
constexpr auto kSoonerThanAnyUser = 700ms;

QDBusMessage portalCall(const QString &interface, const QString &member)
{
    return QDBusMessage::createMethodCall(PortalRequest::service(), PortalRequest::path(), interface, member);
}

QStringList localPaths(const QStringList &uris)
{
    QStringList paths;
    for (const QString &uri : uris) {
        if (const QUrl url(uri, QUrl::StrictMode); url.isLocalFile()) {
            paths << url.toLocalFile();
        }
    }
    return paths;
}

} // namespace

PortalFileRequest::PortalFileRequest(QDBusConnection bus, FileChoice choice, const TaskScheduler &scheduler,
                                     Answer answer)
    : m_bus(std::move(bus))
    , m_choice(std::move(choice))
    , m_scheduler(scheduler)
    , m_answer(std::move(answer))
    , m_token(QStringLiteral("ostrelle_") + QUuid::createUuid().toString(QUuid::Id128))
{
    // Where the interface is missing, no backend for choosers is installed.
    QDBusMessage request = portalCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    request << QString::fromLatin1(kChooserInterface) << QStringLiteral("version");
    call(request, [this](const QDBusMessage &reply) {
        const uint version = reply.arguments().value(0).value<QDBusVariant>().variant().toUInt();
        if (version == 0 || (m_choice.kind == FileChoice::Kind::Folders && version < kVersionWithFolders)) {
            finish(Outcome::Unavailable);
        } else {
            openChooser();
        }
    });
}

PortalFileRequest::~PortalFileRequest()
{
    if (m_answer) {
        closeChooser();
    }
}

void PortalFileRequest::call(const QDBusMessage &request, std::function<void(const QDBusMessage &)> replied)
{
    auto &watcher = makeChild<QDBusPendingCallWatcher>(this, m_bus.asyncCall(request, kDeadline));
    connect(&watcher, &QDBusPendingCallWatcher::finished, this,
            [this, replied = std::move(replied)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                if (!m_answer) {
                    return;
                }
                if (finished->isError()) {
                    closeChooser();
                    finish(Outcome::Unavailable);
                } else {
                    replied(finished->reply());
                }
            });
}

void PortalFileRequest::openChooser()
{
    // The path is known beforehand, so that no answer can come before somebody listens. Any sender, since naming one
    // would make the bus be asked, and waited for, who that is.
    m_requestPath = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                        .arg(m_bus.baseService().mid(1).replace(u'.', u'_'), m_token);
    m_bus.connect(QString(), m_requestPath, PortalRequest::interface(), QStringLiteral("Response"), this,
                  SLOT(handleResponse(QDBusMessage)));
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                  QStringLiteral("NameOwnerChanged"), {PortalRequest::service()}, QString(), this,
                  SLOT(handleOwnerChange(QDBusMessage)));

    QVariantMap options{{QStringLiteral("handle_token"), m_token}, {QStringLiteral("modal"), false}};
    if (!m_choice.acceptLabel.isEmpty()) {
        options.insert(QStringLiteral("accept_label"), m_choice.acceptLabel);
    }
    if (m_choice.kind == FileChoice::Kind::Folders) {
        options.insert(QStringLiteral("directory"), true);
        options.insert(QStringLiteral("multiple"), true);
    } else if (!m_choice.mimeTypes.isEmpty()) {
        options.insert(QStringLiteral("filters"), PortalFileFilter::argumentFor(m_choice));
    }
    // No parent window: the window manager does not know the panel, so it could place nothing relative to it.
    QDBusMessage request = portalCall(QString::fromLatin1(kChooserInterface), QStringLiteral("OpenFile"));
    request << QString() << m_choice.message << options;
    m_asked = m_scheduler.now();
    call(request, [](const QDBusMessage &) {});
}

void PortalFileRequest::closeChooser()
{
    if (!m_requestPath.isEmpty()) {
        m_bus.send(QDBusMessage::createMethodCall(PortalRequest::service(), m_requestPath, PortalRequest::interface(),
                                                  QStringLiteral("Close")));
    }
}

void PortalFileRequest::handleResponse(const QDBusMessage &message)
{
    if (message.signature() != QStringLiteral("ua{sv}")) {
        finish(Outcome::Closed);
        return;
    }
    const auto response = static_cast<Response>(message.arguments().at(0).toUInt());
    if (response == Response::Chosen) {
        const auto results = qdbus_cast<QVariantMap>(message.arguments().at(1));
        finish(Outcome::Closed, localPaths(results.value(QStringLiteral("uris")).toStringList()));
    } else if (response != Response::Cancelled && m_scheduler.now() - m_asked < kSoonerThanAnyUser) {
        finish(Outcome::Unavailable);
    } else {
        finish(Outcome::Closed);
    }
}

void PortalFileRequest::handleOwnerChange(const QDBusMessage &message)
{
    if (message.arguments().value(2).toString().isEmpty()) {
        finish(Outcome::Closed);
    }
}

void PortalFileRequest::finish(Outcome outcome, const QStringList &paths)
{
    if (const Answer answer = std::exchange(m_answer, {})) {
        answer(outcome, paths);
    }
}

} // namespace ostrelle
