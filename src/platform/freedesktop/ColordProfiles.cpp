#include "platform/freedesktop/ColordProfiles.h"

#include "foundation/MakeChild.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>
#include <QUuid>

#include <utility>

namespace ostrelle {

namespace {

constexpr int kColordDeadline = 2000;               // ms
constexpr qint64 kLargestProfile = 4 * 1024 * 1024; // bytes; tables of a screen have some hundred thousand
constexpr auto kColordService = "org.freedesktop.ColorManager";

bool isSystemBusThere()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SYSTEM_BUS_ADDRESS") ||
           QFileInfo::exists(QStringLiteral("/run/dbus/system_bus_socket"));
}

QDBusMessage question(const QString &path, const QString &interface, const QString &member)
{
    QDBusMessage message = QDBusMessage::createMethodCall(QString::fromLatin1(kColordService), path, interface, member);
    message.setAutoStartService(false);
    return message;
}

QString interfaceOf(const char *object)
{
    return QString::fromLatin1(kColordService) + QLatin1String(object);
}

} // namespace

ColordProfiles::ColordProfiles(QStringList outputs, Answer answer)
    : m_answer(std::move(answer))
{
    if (outputs.isEmpty() || !isSystemBusThere()) {
        return;
    }
    // Connecting greets the bus and waits for its answer.
    QThreadPool::globalInstance()->start([guard = QPointer<ColordProfiles>(this), outputs = std::move(outputs)] {
        const QString name = QStringLiteral("ostrelle-colord-") + QUuid::createUuid().toString(QUuid::Id128);
        const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
        QMetaObject::invokeMethod(
            qApp,
            [guard, outputs, bus] {
                if (guard) {
                    guard->begin(bus, outputs);
                } else {
                    QDBusConnection::disconnectFromBus(bus.name());
                }
            },
            Qt::QueuedConnection);
    });
}

ColordProfiles::~ColordProfiles()
{
    if (m_bus) {
        QDBusConnection::disconnectFromBus(m_bus->name());
    }
}

void ColordProfiles::begin(const QDBusConnection &bus, const QStringList &outputs)
{
    m_bus = bus;
    for (const QString &output : outputs) {
        findDevice(output);
    }
}

void ColordProfiles::ask(const QDBusMessage &question, std::function<void(const QDBusMessage &)> replied)
{
    auto &watcher = makeChild<QDBusPendingCallWatcher>(this, m_bus->asyncCall(question, kColordDeadline));
    connect(&watcher, &QDBusPendingCallWatcher::finished, this,
            [replied = std::move(replied)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                if (!finished->isError()) {
                    replied(finished->reply());
                }
            });
}

void ColordProfiles::askProperty(const QString &path, const QString &interface, const QString &name,
                                 std::function<void(const QVariant &)> replied)
{
    QDBusMessage message = question(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << interface << name;
    ask(message, [replied = std::move(replied)](const QDBusMessage &reply) {
        replied(reply.arguments().value(0).value<QDBusVariant>().variant());
    });
}

void ColordProfiles::findDevice(const QString &output)
{
    QDBusMessage message = question(QStringLiteral("/org/freedesktop/ColorManager"),
                                    QString::fromLatin1(kColordService), QStringLiteral("FindDeviceByProperty"));
    message << QStringLiteral("XRANDR_name") << output;
    ask(message, [this, output](const QDBusMessage &device) {
        const QString path = device.arguments().value(0).value<QDBusObjectPath>().path();
        askProperty(path, interfaceOf(".Device"), QStringLiteral("Profiles"), [this, output](const QVariant &value) {
            // The one in use comes first.
            const auto profiles = qdbus_cast<QList<QDBusObjectPath>>(value);
            if (!profiles.isEmpty()) {
                askProperty(profiles.first().path(), interfaceOf(".Profile"), QStringLiteral("Filename"),
                            [this, output](const QVariant &file) { readFile(output, file.toString()); });
            }
        });
    });
}

void ColordProfiles::readFile(const QString &output, const QString &path)
{
    // A home may lie on a server that does not answer: never on the main thread.
    QThreadPool::globalInstance()->start([guard = QPointer<ColordProfiles>(this), output, path] {
        QFile file(path);
        const bool isUsable = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
        const QByteArray icc = isUsable ? file.read(kLargestProfile) : QByteArray();
        QMetaObject::invokeMethod(
            qApp,
            [guard, output, icc] {
                if (guard && !icc.isEmpty()) {
                    guard->m_answer(output, icc);
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace ostrelle
