#include "platform/freedesktop/PortalFileTransfer.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QVariantMap>

namespace ostrelle {

namespace {

constexpr int kDeadline = 2000; // ms

} // namespace

void PortalFileTransfer::retrieve(const QString &key, QObject *context, std::function<void(QStringList)> answer)
{
    auto call = [this, key, answer, guard = QPointer<QObject>(context)](const QDBusConnection &bus) {
        QDBusMessage request = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.portal.Documents"), QStringLiteral("/org/freedesktop/portal/documents"),
            QStringLiteral("org.freedesktop.portal.FileTransfer"), QStringLiteral("RetrieveFiles"));
        request << key << QVariantMap();
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(request, kDeadline));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this, [answer, guard](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            const QDBusPendingReply<QStringList> reply = *finished;
            QStringList paths = reply.isValid() ? reply.value() : QStringList();
            paths.removeIf([](const QString &path) { return !path.startsWith(u'/'); });
            if (guard) {
                answer(paths);
            }
        });
    };
    sessionBus::whenConnected(context, std::move(call), [answer = std::move(answer)] { answer({}); });
}

} // namespace ostrelle
