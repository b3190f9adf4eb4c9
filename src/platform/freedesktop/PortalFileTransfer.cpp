#include "platform/freedesktop/PortalFileTransfer.h"

#include "foundation/FileDescriptor.h"
#include "foundation/MakeChild.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QPointer>
#include <QVariantMap>

#include <fcntl.h>

#include <thread>

namespace ostrelle {

namespace {

constexpr int kTransferDeadline = 2000; // ms
/// What a bus lets through with one message by default.
constexpr qsizetype kFilesAtOnce = 16;

QDBusMessage callTo(const QString &method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Documents"),
                                          QStringLiteral("/org/freedesktop/portal/documents"),
                                          QStringLiteral("org.freedesktop.portal.FileTransfer"), method);
}

/// Opens the files, which takes for ever on a dead mount, and passes them on. Any thread but the main one.
void addFiles(const QDBusConnection &bus, const QString &key, const QStringList &paths)
{
    for (qsizetype first = 0; first < paths.size(); first += kFilesAtOnce) {
        QDBusArgument descriptors;
        bool isEmpty = true;
        descriptors.beginArray(QMetaType::fromType<QDBusUnixFileDescriptor>());
        for (const QString &path : paths.mid(first, kFilesAtOnce)) {
            const FileDescriptor file(open(QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC));
            if (file) {
                descriptors << QDBusUnixFileDescriptor(file.get()); // a duplicate
                isEmpty = false;
            }
        }
        descriptors.endArray();
        if (isEmpty) {
            continue; // the portal takes a message without any for a mistake
        }
        QDBusMessage request = callTo(QStringLiteral("AddFiles"));
        request << key << QVariant::fromValue(descriptors) << QVariantMap();
        if (bus.call(request, QDBus::Block, kTransferDeadline).type() == QDBusMessage::ErrorMessage) {
            return;
        }
    }
}

} // namespace

void PortalFileTransfer::retrieve(const QString &key, QObject *context, std::function<void(QStringList)> answer)
{
    auto call = [this, key, answer, guard = QPointer<QObject>(context)](const QDBusConnection &bus) {
        QDBusMessage request = callTo(QStringLiteral("RetrieveFiles"));
        request << key << QVariantMap();
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(request, kTransferDeadline));
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

void PortalFileTransfer::offer(const QStringList &paths, QObject *context, std::function<void(QString)> answer)
{
    auto call = [this, paths, answer, guard = QPointer<QObject>(context)](const QDBusConnection &bus) {
        QDBusMessage request = callTo(QStringLiteral("StartTransfer"));
        request.setAutoStartService(false); // a sandboxed receiver has started it
        request << QVariantMap();
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(request, kTransferDeadline));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this,
                [bus, paths, answer, guard](QDBusPendingCallWatcher *finished) {
                    finished->deleteLater();
                    const QDBusPendingReply<QString> reply = *finished;
                    const QString key = reply.isValid() ? reply.value() : QString();
                    if (!key.isEmpty()) {
                        // Not the pool: the end of the program waits for that, and a dead mount would never let it end.
                        std::thread(addFiles, bus, key, paths).detach();
                    }
                    if (guard) {
                        answer(key);
                    }
                });
    };
    sessionBus::whenConnected(context, std::move(call), [answer = std::move(answer)] { answer({}); });
}

} // namespace ostrelle
