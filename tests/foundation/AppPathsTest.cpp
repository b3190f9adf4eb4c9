#include "foundation/AppPaths.h"

#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace ostrelle;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat facts = {};
    return ::stat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

} // namespace

class AppPathsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void followsTheBaseFolders()
    {
        TemporaryHome home;
        QCOMPARE(AppPaths::support(), home.path(QStringLiteral("data/Ostrelle")));
        QCOMPARE(AppPaths::defaultsFile(), home.path(QStringLiteral("config/Ostrelle/defaults.json")));
        QCOMPARE(AppPaths::controlSocket(), home.path(QStringLiteral("run/ostrelle/control")));
        home.set("XDG_DATA_HOME", QStringLiteral("relative"));
        home.set("XDG_CONFIG_HOME", QString());
        QCOMPARE(AppPaths::support(), home.path(QStringLiteral(".local/share/Ostrelle")));
        QCOMPARE(AppPaths::defaultsFile(), home.path(QStringLiteral(".config/Ostrelle/defaults.json")));
        QVERIFY(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot) ==
                QStringList{QStringLiteral("run")});
    }

    void findsAPlaceForTheControlSocket()
    {
        TemporaryHome home;
        for (const QString &useless : {QString(), QStringLiteral("run"), home.path(QStringLiteral("missing"))}) {
            home.set("XDG_RUNTIME_DIR", useless);
            QCOMPARE(AppPaths::controlSocket(), AppPaths::support() + QStringLiteral("/control"));
        }
        home.set("XDG_DATA_HOME", home.path(QString(100, u'd')));
        QCOMPARE(AppPaths::controlSocket(), QStringLiteral("/tmp/ostrelle-%1/control").arg(::geteuid()));
    }

    void makesFoldersPrivate()
    {
        const TemporaryHome home;
        const mode_t before = ::umask(0);
        QVERIFY(AppPaths::ensurePrivateFolder(home.path(QStringLiteral("a/b/c"))));
        QVERIFY(QDir().mkdir(home.path(QStringLiteral("open"))));
        ::umask(before);
        QCOMPARE(modeOf(home.path(QStringLiteral("a"))), mode_t(0700));
        QCOMPARE(modeOf(home.path(QStringLiteral("a/b/c"))), mode_t(0700));
        QVERIFY(AppPaths::ensurePrivateFolder(home.path(QStringLiteral("open/"))));
        QCOMPARE(modeOf(home.path(QStringLiteral("open"))), mode_t(0700));

        QFile file(home.path(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!AppPaths::ensurePrivateFolder(file.fileName()));
        QVERIFY(!AppPaths::ensurePrivateFolder(file.fileName() + QStringLiteral("/below")));
        QVERIFY(!AppPaths::ensurePrivateFolder(QStringLiteral("relative")));
    }
};

OSTRELLE_TEST(AppPathsTest)
#include "AppPathsTest.moc"
