#include "platform/freedesktop/DesktopFileOpening.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/PortalRequest.h"
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
    qCDebug(lcPlatform).noquote() << "Opening" << path;
    startOpener(QFile::encodeName(path), token);
}

void DesktopFileOpening::openAddress(const QUrl &address, const ActivationToken &token)
{
    const auto openElse = [this, address, token] { startOpener(address.toEncoded(), token); };
    auto ask = [this, address, token, openElse](const QDBusConnection &bus) {
        auto answered = [this, openElse](const std::optional<QVariantMap> &results) {
            const bool isSettled = results || m_asked->wasCancelled();
            m_asked.release()->deleteLater();
            if (!isSettled) {
                openElse();
            }
        };
        const auto portal = QStringLiteral("OpenURI");
        m_asked = std::make_unique<PortalRequest>(
            bus, portal, portal, QVariantList{QString(), QString::fromLatin1(address.toEncoded())},
            QVariantMap{{QStringLiteral("activation_token"), token.value}}, std::move(answered));
    };
    sessionBus::whenConnected(this, std::move(ask), openElse);
}

void DesktopFileOpening::startOpener(const QByteArray &what, const ActivationToken &token)
{
    const QByteArrayList variables{"XDG_ACTIVATION_TOKEN=" + token.value.toUtf8(),
                                   "DESKTOP_STARTUP_ID=" + token.value.toUtf8()};
    const auto report = [](std::optional<int> status) {
        if (!status) {
            qCWarning(lcPlatform, "Nothing can be opened: neither xdg-open nor gio is there.");
        } else if (*status != 0) {
            qCWarning(lcPlatform, "The desktop's opener ended with status %d.", *status);
        }
    };
    m_programs.start({"xdg-open", what}, variables, [this, what, variables, report](std::optional<int> status) {
        if (status) {
            report(status);
        } else {
            m_programs.start({"gio", "open", what}, variables, report);
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
