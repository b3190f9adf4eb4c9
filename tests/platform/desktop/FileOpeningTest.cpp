#include "DefaultApplication.h"
#include "PortalStandIn.h"
#include "platform/freedesktop/DesktopFileOpening.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>

namespace ostrelle {

namespace {

const auto kFileManager = QStringLiteral("org.freedesktop.FileManager1");

/// Stands in for the file manager on the test's own bus.
class FileManager : public QDBusVirtualObject
{
public:
    enum class Manner { Shows, Refuses, Hangs };

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        calls << message;
        if (manner == Manner::Refuses) {
            return false;
        }
        return manner == Manner::Hangs || bus.send(message.createReply());
    }

    Manner manner = Manner::Shows;
    QList<QDBusMessage> calls;
};

bool hasZombie()
{
    for (const QString &process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile file(QStringLiteral("/proc/%1/stat").arg(process));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArrayList fields = file.readAll().split(')').constLast().simplified().split(' ');
            if (fields.value(0) == "Z" && fields.value(1).toLongLong() == QCoreApplication::applicationPid()) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

class FileOpeningTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text\n");
        QVERIFY(m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), &m_manager));
    }

    void cleanup() { m_bus.unregisterService(kFileManager); }

    void opensWithTheDefaultApplicationAndHandsNothingOfItselfOn()
    {
        const QString lock = m_folder.filePath(QStringLiteral("lock"));
        const int inheritable = ::open(QFile::encodeName(lock).constData(), O_CREAT | O_RDWR, 0600);
        QVERIFY(inheritable >= 0);
        qputenv("OSTRELLE_OWN_MATTER", "1");
        DefaultApplication application;
        DesktopFileOpening opening;
        opening.open(m_path, {QStringLiteral("token_TIME42")});
        QVERIFY(application.opened().isEmpty()); // nobody waited
        QTRY_COMPARE(application.opened(), QStringList(m_path));
        QCOMPARE(application.variable("XDG_ACTIVATION_TOKEN"), QByteArray("token_TIME42"));
        QCOMPARE(application.variable("DESKTOP_STARTUP_ID"), QByteArray("token_TIME42"));
        QCOMPARE(application.variable("OSTRELLE_OWN_MATTER"), QByteArray());
        QCOMPARE(application.descriptors().first(2), QByteArrayList(2, "/dev/null"));
        QVERIFY(!application.descriptors().contains(QFile::encodeName(lock)));
        QTRY_VERIFY(!hasZombie());
        ::close(inheritable);
    }

    void opensAFolderInTheFileManager()
    {
        DefaultApplication application;
        DesktopFileOpening opening;
        opening.open(m_folder.path(), {});
        QTRY_COMPARE(application.opened(), QStringList(m_folder.path()));
        QCOMPARE(application.variable("XDG_ACTIVATION_TOKEN"), QByteArray());
    }

    void reportsWhatCannotBeOpened()
    {
        static QStringList said;
        said.clear();
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &message) { said << message; });
        DesktopFileOpening opening;
        opening.open(m_folder.filePath(QStringLiteral("missing")), {});
        QTRY_COMPARE(said, QStringList(QStringLiteral("The desktop's opener ended with status 2.")));

        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_folder.path()));
        opening.open(m_path, {});
        QTRY_COMPARE(said.value(1), QStringLiteral("Nothing can be opened: neither xdg-open nor gio is there."));
        qputenv("PATH", path);
        qInstallMessageHandler(before);
    }

    void revealsInTheFileManager()
    {
        m_manager.manner = FileManager::Manner::Shows;
        m_manager.calls.clear();
        QVERIFY(m_bus.registerService(kFileManager));
        DefaultApplication application;
        DesktopFileOpening opening;
        opening.reveal(m_path, {QStringLiteral("token")});
        QTRY_COMPARE(m_manager.calls.size(), 1);
        opening.reveal(m_folder.path() + u'/', {});
        QTRY_COMPARE(m_manager.calls.size(), 2);
        const QVariantList file = m_manager.calls.at(0).arguments();
        QCOMPARE(m_manager.calls.at(0).member(), QStringLiteral("ShowItems"));
        QCOMPARE(file.at(0).toStringList(),
                 QStringList(QStringLiteral("file://%1/100%25%20%C3%BC%20%231%3F.txt").arg(m_folder.path())));
        QCOMPARE(file.at(1).toString(), QStringLiteral("token"));
        QCOMPARE(m_manager.calls.at(1).arguments().at(0).toStringList(),
                 QStringList(QStringLiteral("file://") + m_folder.path()));
        QVERIFY(application.opened().isEmpty());
    }

    void opensTheFolderWhereTheFileManagerDoesNotShowItems_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<FileManager::Manner>("manner");
        QTest::newRow("not there") << false << FileManager::Manner::Shows;
        QTest::newRow("refuses") << true << FileManager::Manner::Refuses;
        QTest::newRow("hangs") << true << FileManager::Manner::Hangs;
    }

    void opensTheFolderWhereTheFileManagerDoesNotShowItems()
    {
        QFETCH(const bool, isThere);
        QFETCH(const FileManager::Manner, manner);
        m_manager.manner = manner;
        if (isThere) {
            QVERIFY(m_bus.registerService(kFileManager));
        }
        DefaultApplication application;
        DesktopFileOpening opening;
        opening.reveal(m_folder.filePath(QStringLiteral("missing")), {});
        QTRY_COMPARE_WITH_TIMEOUT(application.opened(), QStringList(m_folder.path()), 10'000);
    }

    void opensAnAddressThroughThePortal()
    {
        PortalStandIn portal;
        portal.appear();
        DefaultApplication application;
        DesktopFileOpening opening;
        const QUrl address(QString::fromUtf8("https://get.example/ü?a=1&b=%2F"));
        opening.openAddress(address, {QStringLiteral("token")});
        QTRY_COMPARE(portal.opened, 1);
        QCOMPARE(portal.title, QStringLiteral("https://get.example/%C3%BC?a=1&b=%2F"));
        QCOMPARE(portal.options.value(QStringLiteral("activation_token")), QStringLiteral("token"));
        portal.respond(0);
        // When the next one is there, the first has had its time.
        opening.openAddress(address, {});
        QTRY_COMPARE(portal.opened, 2);
        portal.respond(1); // the user would not have it
        portal.die();
        const auto other = QStringLiteral("https://other.example/");
        opening.openAddress(QUrl(other), {});
        QTRY_VERIFY(!application.opened().isEmpty());
        QCOMPARE(application.opened(), QStringList(other));
    }

    void opensAnAddressWithTheDefaultBrowserWhereThePortalDoesNot_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<PortalStandIn::Manner>("manner");
        QTest::newRow("not there") << false << PortalStandIn::Manner::Works;
        QTest::newRow("refuses") << true << PortalStandIn::Manner::RefusesToOpen;
        QTest::newRow("finds nothing that opens it") << true << PortalStandIn::Manner::ShowsNothing;
        QTest::newRow("hangs") << true << PortalStandIn::Manner::Hangs;
    }

    void opensAnAddressWithTheDefaultBrowserWhereThePortalDoesNot()
    {
        QFETCH(const bool, isThere);
        QFETCH(const PortalStandIn::Manner, manner);
        PortalStandIn portal;
        portal.manner = manner;
        if (isThere) {
            portal.appear();
        }
        DefaultApplication application;
        DesktopFileOpening opening;
        const auto address = QStringLiteral("https://get.example/1.5?a=1&b=2");
        opening.openAddress(QUrl(address), {QStringLiteral("token")});
        QTRY_COMPARE_WITH_TIMEOUT(application.opened(), QStringList(address), 10'000);
        QCOMPARE(application.variable("XDG_ACTIVATION_TOKEN"), QByteArray("token"));
    }

private:
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QString::fromUtf8("100% ü #1?.txt"));
    FileManager m_manager;
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("file-manager"));
};

} // namespace ostrelle

using ostrelle::FileOpeningTest;
OSTRELLE_TEST(FileOpeningTest)

#include "FileOpeningTest.moc"
