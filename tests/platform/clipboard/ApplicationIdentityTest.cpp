#include "platform/freedesktop/ApplicationIdentity.h"
#include "platform/freedesktop/DesktopFileIndex.h"
#include "platform/freedesktop/ProcessIdentity.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace ostrelle {

namespace {

ApplicationFacts factOf(QString ApplicationFacts::*fact, const char *value)
{
    ApplicationFacts facts;
    facts.*fact = QString::fromLatin1(value);
    return facts;
}

} // namespace

class ApplicationIdentityTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void mapsPasswordManagersHoweverTheyAreKnown_data()
    {
        QTest::addColumn<ApplicationFacts>("facts");
        QTest::addColumn<QString>("identifier");
        const auto onePassword = QStringLiteral("com.1password.1password");
        const auto bitwarden = QStringLiteral("com.bitwarden.desktop");
        const auto keyring = QStringLiteral("com.apple.keychainaccess");
        QTest::newRow("class") << factOf(&ApplicationFacts::className, "1Password") << onePassword;
        QTest::newRow("flatpak") << factOf(&ApplicationFacts::sandboxId, "com.onepassword.OnePassword") << onePassword;
        QTest::newRow("snap") << factOf(&ApplicationFacts::snapName, "bitwarden") << bitwarden;
        QTest::newRow("toolkit") << factOf(&ApplicationFacts::toolkitId, "org.gnome.seahorse.Application") << keyring;
        QTest::newRow("program") << factOf(&ApplicationFacts::executable, "gcr-prompter") << keyring;
        QTest::newRow("desktop file") << factOf(&ApplicationFacts::desktopFileId, "org.kde.kwalletmanager5") << keyring;
        QTest::newRow("instance") << factOf(&ApplicationFacts::classInstance, "keepassxc") << keyring;
    }
    void mapsPasswordManagersHoweverTheyAreKnown()
    {
        QFETCH(ApplicationFacts, facts);
        QFETCH(QString, identifier);
        QVERIFY(applicationOf(facts).identifiers.contains(identifier));
    }

    void ordersIdentifiersAndNames()
    {
        ApplicationFacts facts;
        facts.sandboxId = QStringLiteral("org.example.Notes");
        facts.className = QStringLiteral("Notes");
        facts.classInstance = QStringLiteral("Notes");
        const Application known = applicationOf(facts);
        QCOMPARE(known.identifiers, QStringList({facts.sandboxId, facts.className}));
        QCOMPARE(known.name, QStringLiteral("Notes"));
        facts.desktopName = QStringLiteral("Fine Notes");
        QCOMPARE(applicationOf(facts).name, facts.desktopName);
        QVERIFY(applicationOf({}).identifiers.isEmpty());
    }

    void readsWhatSandboxesAndTheSessionTell()
    {
        QCOMPARE(
            ProcessIdentity::flatpakIdIn("[Instance]\nname=no\n\n[Application]\nruntime=x\nname=org.example.App\n"),
            QStringLiteral("org.example.App"));
        QCOMPARE(ProcessIdentity::snapNameIn("snap.some-vault.desktop (enforce)\n"), QStringLiteral("some-vault"));
        QVERIFY(ProcessIdentity::snapNameIn("unconfined\n").isEmpty());
        const QByteArray slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
        for (const char *scope :
             {"app-gnome-org.example.Two\\x2dWords-12345.scope", "app-org.example.Two\\x2dWords-9.scope",
              "app-org.example.Two\\x2dWords@a1b2.service"}) {
            QCOMPARE(ProcessIdentity::scopeIdIn(slice + scope + "\n"), QStringLiteral("org.example.Two-Words"));
        }
        QVERIFY(ProcessIdentity::scopeIdIn("0::/user.slice/session-2.scope\n").isEmpty());
        QVERIFY(!ProcessIdentity::ofProcess(QCoreApplication::applicationPid()).executable.isEmpty());
    }

    void findsDesktopFilesByClassThenByName()
    {
        const QTemporaryDir user;
        const QTemporaryDir system;
        const auto write = [](const QTemporaryDir &folder, const char *name, const QByteArray &content) {
            QFile file(folder.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("[Desktop Action x]\nName=Wrong\n[Desktop Entry]\nName[de]=Falsch\n" + content);
        };
        write(system, "org.example.Vault.desktop", "Name=System Vault\nStartupWMClass=VaultWindow\n");
        write(system, "plain.desktop", "Name=Plain\n");
        DesktopFileIndex index({user.path(), system.path()});
        QCOMPARE(index.find({QStringLiteral("vaultwindow")})->id, QStringLiteral("org.example.Vault"));
        QCOMPARE(index.find({QStringLiteral("nothing"), QStringLiteral("PLAIN")})->name, QStringLiteral("Plain"));
        QVERIFY(!index.find({QString(), QStringLiteral("nothing")}));

        // A file that is installed later is found, and the user's own goes first.
        write(user, "org.example.Vault.desktop", "Name=My Vault\nStartupWMClass=VaultWindow\n");
        QCOMPARE(index.find({QStringLiteral("VaultWindow")})->name, QStringLiteral("My Vault"));
    }
};

} // namespace ostrelle

using ostrelle::ApplicationIdentityTest;
OSTRELLE_TEST(ApplicationIdentityTest)

#include "ApplicationIdentityTest.moc"
