#include "platform/freedesktop/SessionBus.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace ostrelle::sessionBus {

namespace {

/// Without either, the bus library would start a bus of its own.
bool isThere()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

} // namespace

void whenConnected(QObject *context, std::function<void(QDBusConnection)> use, std::function<void()> otherwise)
{
    // The guard is looked at on the main thread only; the application object outlives the pool's work.
    auto tell = [guard = QPointer<QObject>(context), use = std::move(use),
                 otherwise = std::move(otherwise)](const QDBusConnection &bus) {
        if (guard && bus.isConnected()) {
            use(bus);
        } else if (guard && otherwise) {
            otherwise();
        }
    };
    QThreadPool::globalInstance()->start([tell = std::move(tell)] {
        // Connecting greets the bus and waits for its answer.
        const QDBusConnection bus =
            isThere() ? QDBusConnection::sessionBus() : QDBusConnection(QStringLiteral("ostrelle-none"));
        QMetaObject::invokeMethod(
            qApp, [tell, bus] { tell(bus); }, Qt::QueuedConnection);
    });
}

} // namespace ostrelle::sessionBus
