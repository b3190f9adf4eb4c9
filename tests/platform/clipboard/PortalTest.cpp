#include "PortalStandIn.h"
#include "platform/freedesktop/PortalAppearance.h"
#include "platform/freedesktop/PortalFileTransfer.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace ostrelle {

using Settings = PortalStandIn::Settings;

class PortalTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
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
        m_portal.files[QStringLiteral("a key")] = {QStringLiteral("/tmp/real"), QStringLiteral("odd")};
        QCOMPARE(retrieved(QStringLiteral("a key")), QStringList(QStringLiteral("/tmp/real")));
        QVERIFY(retrieved(QStringLiteral("another")).isEmpty());
    }

    void offersFilesByAKey()
    {
        const QTemporaryDir folder;
        QStringList paths;
        for (int i = 0; i < 40; ++i) { // more than go into one message
            paths << folder.filePath(QStringLiteral("file %1").arg(i));
            QFile(paths.last()).open(QIODevice::WriteOnly);
        }
        QStringList offered = paths;
        offered.insert(20, folder.filePath(QStringLiteral("missing")));
        PortalFileTransfer transfer;
        std::optional<QString> key;
        transfer.offer(offered, this, [&](const QString &answer) { key = answer; });
        QVERIFY(!key);
        QTRY_VERIFY(key);
        QVERIFY(!key->isEmpty());
        QTRY_COMPARE(m_portal.files[*key].count(), 40);
        QCOMPARE(retrieved(*key), paths);
    }

private:
    QStringList retrieved(const QString &key)
    {
        PortalFileTransfer transfer;
        std::optional<QStringList> paths;
        transfer.retrieve(key, this, [&](const QStringList &answer) { paths = answer; });
        return !paths && QTest::qWaitFor([&] { return paths.has_value(); }) ? *paths : QStringList();
    }
    void change(const char *space, const char *key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            PortalStandIn::path(), QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << QString::fromLatin1(space) << QString::fromLatin1(key) << QVariant::fromValue(QDBusVariant(value));
        m_portal.bus().send(signal);
    }

    PortalStandIn m_portal;
};

} // namespace ostrelle

using ostrelle::PortalTest;
OSTRELLE_TEST(PortalTest)

#include "PortalTest.moc"
