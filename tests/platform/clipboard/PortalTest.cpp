#include "platform/freedesktop/PortalAppearance.h"
#include "platform/freedesktop/PortalFileTransfer.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QMap>
#include <QTest>
#include <QVariantMap>

namespace ostrelle {

namespace {

using Settings = QMap<QString, QVariantMap>;

const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// Stands in for the desktop's portals on the test's own bus.
class StandIn : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == QStringLiteral("ReadAll")) {
            return bus.send(message.createReply(QVariant::fromValue(settings)));
        }
        if (message.member() == QStringLiteral("RetrieveFiles")) {
            const bool isKnown = message.arguments().value(0).toString() == QStringLiteral("a key");
            return bus.send(isKnown
                                ? message.createReply(QStringList{QStringLiteral("/tmp/real"), QStringLiteral("odd")})
                                : message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such key")));
        }
        return false;
    }

    Settings settings;
};

} // namespace

class PortalTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        qDBusRegisterMetaType<Settings>();
        QVERIFY(m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal"), &m_portal,
                                            QDBusConnection::SubPath));
        QVERIFY(m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
        QVERIFY(m_bus.registerService(QStringLiteral("org.freedesktop.portal.Documents")));
    }

    void followsTheDesktopsWishes()
    {
        m_portal.settings = {
            {QStringLiteral("org.freedesktop.appearance"),
             {{QStringLiteral("color-scheme"), 2U}, {QStringLiteral("contrast"), 1U}}},
            {QStringLiteral("org.gnome.desktop.interface"), {{QStringLiteral("enable-animations"), false}}}};
        PortalAppearance appearance;
        QVERIFY(appearance.isDark().value()); // nobody waited
        QVERIFY(!appearance.prefersReducedMotion().value());
        QTRY_VERIFY(!appearance.isDark().value());
        QVERIFY(appearance.prefersMoreContrast().value());
        QVERIFY(appearance.prefersReducedMotion().value());

        change("org.freedesktop.appearance", "color-scheme", 0U);
        QTRY_VERIFY(appearance.isDark().value()); // no preference
        change("org.gnome.desktop.interface", "enable-animations", true);
        QTRY_VERIFY(!appearance.prefersReducedMotion().value());
        change("org.freedesktop.appearance", "contrast", QStringLiteral("nonsense"));
        QTRY_VERIFY(!appearance.prefersMoreContrast().value());
    }

    void retrievesFilesByTheirKey()
    {
        PortalFileTransfer transfer;
        std::optional<QStringList> known;
        std::optional<QStringList> unknown;
        transfer.retrieve(QStringLiteral("a key"), this, [&](const QStringList &paths) { known = paths; });
        transfer.retrieve(QStringLiteral("another"), this, [&](const QStringList &paths) { unknown = paths; });
        QVERIFY(!known);
        QTRY_VERIFY(known && unknown);
        QCOMPARE(*known, QStringList(QStringLiteral("/tmp/real")));
        QVERIFY(unknown->isEmpty());
    }

private:
    void change(const char *space, const char *key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(kPath, QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << QString::fromLatin1(space) << QString::fromLatin1(key) << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    StandIn m_portal;
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stand-in"));
};

} // namespace ostrelle

using ostrelle::PortalTest;
OSTRELLE_TEST(PortalTest)

#include "PortalTest.moc"
