#include "platform/freedesktop/AutostartEntry.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace ostrelle {

namespace {

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class AutostartEntryTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_home = std::make_unique<TemporaryHome>();
        m_home->set("XDG_CONFIG_HOME", m_home->path(QStringLiteral("config")));
        m_home->set("XDG_CONFIG_DIRS", m_home->path(QStringLiteral("machine")));
        m_home->set("XDG_CURRENT_DESKTOP", QStringLiteral("ubuntu:GNOME"));
    }

    void readsWhatDesktopsWrite_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<LoginItem::Status>("status");
        using Status = LoginItem::Status;
        QTest::newRow("plain") << QByteArray("Exec=ostrelle\n") << Status::Enabled;
        QTest::newRow("hidden") << QByteArray("Exec=ostrelle\nHidden=true\n") << Status::RequiresApproval;
        QTest::newRow("hidden by an override") << QByteArray("Hidden = true\n") << Status::RequiresApproval;
        QTest::newRow("GNOME") << QByteArray("Exec=ostrelle\nX-GNOME-Autostart-enabled=false\n")
                               << Status::RequiresApproval;
        QTest::newRow("not for this desktop")
            << QByteArray("Exec=ostrelle\nNotShowIn=KDE;GNOME;\n") << Status::RequiresApproval;
        QTest::newRow("only for another")
            << QByteArray("Exec=ostrelle\nOnlyShowIn=XFCE;\n") << Status::RequiresApproval;
        QTest::newRow("also for this") << QByteArray("Exec=ostrelle\nOnlyShowIn=XFCE;GNOME;\n") << Status::Enabled;
        QTest::newRow("of another group")
            << QByteArray("Exec=ostrelle\n[Desktop Action x]\nHidden=true\n") << Status::Enabled;
        QTest::newRow("a comment") << QByteArray("Exec=ostrelle\n#Hidden=true\n") << Status::Enabled;
        QTest::newRow("garbage") << QByteArray("\xff\xfe\n=\n") << Status::NotFound;
    }

    void readsWhatDesktopsWrite()
    {
        QFETCH(const QByteArray, lines);
        write(own(), "[Desktop Entry]\n" + lines);
        QTEST(m_entry.status(), "status");
    }

    void comesAndGoesAndCanBeSwitchedOff()
    {
        using Status = LoginItem::Status;
        QCOMPARE(m_entry.status(), Status::NotRegistered);
        QCOMPARE(m_entry.remove(), QString());
        QCOMPARE(m_entry.enable(), QString());
        QCOMPARE(m_entry.status(), Status::Enabled);
        QVERIFY(read(own()).contains("\nExec=\"/opt/a \\\\\"b\\\\$c%%/ostrelle\"\n"));
        QCOMPARE(m_entry.refuse(), QString());
        QCOMPARE(m_entry.status(), Status::RequiresApproval);
        QCOMPARE(m_entry.enable(), QString());
        QCOMPARE(m_entry.status(), Status::Enabled);
        QCOMPARE(m_entry.remove(), QString());
        QCOMPARE(m_entry.status(), Status::NotRegistered);
        QVERIFY(!QFileInfo::exists(own()));
    }

    void oneOfTheMachineIsHiddenByOneOfTheUser()
    {
        const QString machines = m_home->path(QStringLiteral("machine/autostart/org.example.Ostrelle.desktop"));
        write(machines, "[Desktop Entry]\nExec=ostrelle\n");
        QCOMPARE(m_entry.status(), LoginItem::Status::Enabled);
        QCOMPARE(m_entry.remove(), QString());
        QCOMPARE(m_entry.status(), LoginItem::Status::RequiresApproval);
        QVERIFY(QFileInfo::exists(machines));
    }

    void tellsWhatWentWrong()
    {
        write(m_home->path(QStringLiteral("config")), "a file where the folder should be");
        QVERIFY(!m_entry.enable().isEmpty());
        QCOMPARE(m_entry.status(), LoginItem::Status::NotRegistered);
    }

private:
    QString own() const { return m_home->path(QStringLiteral("config/autostart/org.example.Ostrelle.desktop")); }

    std::unique_ptr<TemporaryHome> m_home;
    AutostartEntry m_entry{QStringLiteral("org.example.Ostrelle"), QStringLiteral("/opt/a \"b$c%/ostrelle")};
};

} // namespace ostrelle

using ostrelle::AutostartEntryTest;
OSTRELLE_TEST(AutostartEntryTest)

#include "AutostartEntryTest.moc"
