#include "platform/freedesktop/DesktopFileOpening.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcPlatform, "ostrelle.platform", QtInfoMsg)

constexpr int kRevealDeadline = 3000; // ms; a file manager that the bus has to start first takes one or two

QDBusMessage showItems(const QString &path, const ActivationToken &token)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    request << QStringList(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())) << token.value;
    return request;
}

} // namespace

DesktopFileOpening::DesktopFileOpening(QObject *parent)
    : QObject(parent)
{
}

DesktopFileOpening::~DesktopFileOpening() = default;

void DesktopFileOpening::open(const QString &path, const ActivationToken &token)
{
    const QByteArray file = QFile::encodeName(path);
    const QByteArrayList variables{"XDG_ACTIVATION_TOKEN=" + token.value.toUtf8(),
                                   "DESKTOP_STARTUP_ID=" + token.value.toUtf8()};
    const auto report = [](std::optional<int> status) {
        if (!status) {
            qCWarning(lcPlatform, "Nothing can be opened: neither xdg-open nor gio is there.");
        } else if (*status != 0) {
            qCWarning(lcPlatform, "The desktop's opener ended with status %d.", *status);
        }
    };
    qCDebug(lcPlatform).noquote() << "Opening" << path;
    m_programs.start({"xdg-open", file}, variables, [this, file, variables, report](std::optional<int> status) {
        if (status) {
            report(status);
        } else {
            m_programs.start({"gio", "open", file}, variables, report);
        }
    });
}

void DesktopFileOpening::reveal(const QString &path, const ActivationToken &token)
{
    const QString item = QDir::cleanPath(path);
    const auto openFolder = [this, item, token] { open(QFileInfo(item).path(), token); };
    auto show = [this, item, token, openFolder](const QDBusConnection &bus) {
        auto &watcher =
            makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(showItems(item, token), kRevealDeadline));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this, [openFolder](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            if (finished->isError()) {
                qCDebug(lcPlatform).noquote() << "The file manager does not show items:" << finished->error().name();
                openFolder();
            }
        });
    };
    sessionBus::whenConnected(this, std::move(show), openFolder);
}

} // namespace ostrelle
