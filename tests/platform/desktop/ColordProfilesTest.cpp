#include "platform/freedesktop/ColordProfiles.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

namespace ostrelle {

namespace {

const auto kService = QStringLiteral("org.freedesktop.ColorManager");
const auto kPath = QStringLiteral("/org/freedesktop/ColorManager");

/// Stands in for colord on the test's own bus.
class ColordStandIn : public QDBusVirtualObject
{
public:
    ColordStandIn()
        : m_bus(connect())
    {
        qDBusRegisterMetaType<QList<QDBusObjectPath>>();
        m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath);
        m_bus.registerService(kService);
    }
    ~ColordStandIn() override { QDBusConnection::disconnectFromBus(QStringLiteral("colord")); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QString first = message.arguments().value(0).toString();
        const QString second = message.arguments().value(1).toString();
        const QString name = message.path().section(u'/', -1);
        if (message.member() == QStringLiteral("FindDeviceByProperty") && first == QStringLiteral("XRANDR_name") &&
            profiles.contains(second)) {
            return bus.send(message.createReply(
                QVariant::fromValue(QDBusObjectPath(kPath + QStringLiteral("/devices/") + second))));
        }
        if (first == kService + QStringLiteral(".Device") && second == QStringLiteral("Profiles")) {
            QList<QDBusObjectPath> paths;
            for (const QString &profile : profiles[name]) {
                paths.append(QDBusObjectPath(kPath + QStringLiteral("/profiles/") + profile));
            }
            return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(paths)))));
        }
        if (first == kService + QStringLiteral(".Profile") && second == QStringLiteral("Filename")) {
            return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(files[name]))));
        }
        return false;
    }

    QMap<QString, QStringList> profiles; ///< by the name of the output
    QMap<QString, QString> files;        ///< by the name of the profile

private:
    static QDBusConnection connect()
    {
        // The bus library looks at the addresses only once.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        return QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("colord"));
    }

    QDBusConnection m_bus;
};

} // namespace

class ColordProfilesTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        write("wide");
        write("other");
        m_colord.profiles = {{QStringLiteral("DP1"), {QStringLiteral("wide"), QStringLiteral("other")}},
                             {QStringLiteral("DP2"), {QStringLiteral("other")}},
                             {QStringLiteral("DP3"), {}},
                             {QStringLiteral("DP4"), {QStringLiteral("folder")}},
                             {QStringLiteral("DP5"), {QStringLiteral("missing")}}};
        m_colord.files[QStringLiteral("folder")] = m_folder.path();
        m_colord.files[QStringLiteral("missing")] = m_folder.filePath(QStringLiteral("missing"));
    }

    void tellsTheProfileInUseOfEachScreenThatHasOne()
    {
        QMap<QString, QByteArray> told;
        const auto tell = [&told](const QString &output, const QByteArray &icc) { told[output] = icc; };
        const ColordProfiles unwanted(
            {QStringLiteral("DP3"), QStringLiteral("DP4"), QStringLiteral("DP5"), QStringLiteral("HDMI1")}, tell);
        const ColordProfiles profiles({QStringLiteral("DP1"), QStringLiteral("DP2")}, tell);
        QTRY_COMPARE(told.size(), 2);
        QCOMPARE(told[QStringLiteral("DP1")], QByteArray("profile wide"));
        QCOMPARE(told[QStringLiteral("DP2")], QByteArray("profile other"));
    }

    void tellsNothingAfterItsEnd()
    {
        int toldTooLate = 0;
        {
            const ColordProfiles ended({QStringLiteral("DP1")}, [&](auto &&...) { ++toldTooLate; });
        }
        int told = 0;
        const ColordProfiles profiles({QStringLiteral("DP1")}, [&](auto &&...) { ++told; });
        QTRY_COMPARE(told, 1);
        QCOMPARE(toldTooLate, 0);
    }

private:
    void write(const char *name)
    {
        const QString path = m_folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("profile ") + name);
        m_colord.files[QString::fromLatin1(name)] = path;
    }

    QTemporaryDir m_folder;
    ColordStandIn m_colord;
};

} // namespace ostrelle

using ostrelle::ColordProfilesTest;
OSTRELLE_TEST(ColordProfilesTest)

#include "ColordProfilesTest.moc"
