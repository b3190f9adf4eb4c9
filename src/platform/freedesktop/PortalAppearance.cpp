#include "platform/freedesktop/PortalAppearance.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/PortalRequest.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
#include <QVariantMap>

namespace ostrelle {

namespace {

constexpr auto kSettingsInterface = "org.freedesktop.portal.Settings";
constexpr auto kAppearance = "org.freedesktop.appearance";
constexpr auto kGnomeInterface = "org.gnome.desktop.interface";

} // namespace

PortalAppearance::PortalAppearance(QObject *parent)
    : DesktopAppearance(parent)
{
    sessionBus::whenConnected(this, [this](QDBusConnection bus) {
        const QString path = PortalRequest::path();
        const QString interface = QString::fromLatin1(kSettingsInterface);
        // Any sender: naming one would make the bus be asked, and waited for, who that is.
        bus.connect(QString(), path, interface, QStringLiteral("SettingChanged"), this,
                    SLOT(handleChange(QDBusMessage)));
        QDBusMessage request =
            QDBusMessage::createMethodCall(PortalRequest::service(), path, interface, QStringLiteral("ReadAll"));
        request << QStringList{QString::fromLatin1(kAppearance), QString::fromLatin1(kGnomeInterface)};
        auto &watcher = makeChild<QDBusPendingCallWatcher>(this, bus.asyncCall(request));
        connect(&watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            if (finished->isError() || finished->reply().signature() != QStringLiteral("a{sa{sv}}")) {
                return;
            }
            const auto spaces = qdbus_cast<QMap<QString, QVariantMap>>(finished->reply().arguments().constFirst());
            for (auto space = spaces.begin(); space != spaces.end(); ++space) {
                for (auto value = space->begin(); value != space->end(); ++value) {
                    apply(space.key(), value.key(), *value);
                }
            }
        });
    });
}

void PortalAppearance::handleChange(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (message.signature() == QStringLiteral("ssv")) {
        apply(arguments.at(0).toString(), arguments.at(1).toString(), arguments.at(2).value<QDBusVariant>().variant());
    }
}

void PortalAppearance::apply(const QString &space, const QString &key, const QVariant &content)
{
    if (space == QLatin1StringView(kAppearance)) {
        if (key == QStringLiteral("color-scheme")) {
            m_isDark = content.toUInt() != 2; // 0 no preference: this program's own look; 1 dark, 2 light
        } else if (key == QStringLiteral("contrast")) {
            m_prefersMoreContrast = content.toUInt() == 1;
        } else if (key == QStringLiteral("reduced-motion")) {
            m_asksForLessMotion = content.toUInt() == 1;
        }
    } else if (space == QLatin1StringView(kGnomeInterface) && key == QStringLiteral("enable-animations") &&
               content.canConvert<bool>()) {
        m_hasAnimations = content.toBool();
    }
    m_prefersReducedMotion = m_asksForLessMotion || !m_hasAnimations;
}

} // namespace ostrelle
