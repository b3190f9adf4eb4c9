#include "PrivateSoundServer.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/Playback.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

/// Attempts from inside the part of a player that reads files.
class PlayerSandboxTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void everyAttemptIsRefused();
};

void PlayerSandboxTest::everyAttemptIsRefused()
{
    PrivateSoundServer server;
    QVERIFY(server.start());
    SystemTaskScheduler scheduler;
    Playback playback(scheduler, QCoreApplication::applicationDirPath() + QStringLiteral("/probe"));
    const QSignalSpy started(&playback, &Playback::started);
    playback.start(QCoreApplication::applicationFilePath());
    QTRY_COMPARE_WITH_TIMEOUT(started.size(), 1, 20'000);
    const auto allowed = static_cast<unsigned>(started.first().first().toDouble()) - 1;
    QVERIFY2(allowed == 0, qPrintable(QStringLiteral("attempts, as bits: %1").arg(allowed, 0, 2)));
}

OSTRELLE_TEST(PlayerSandboxTest)
#include "PlayerSandboxTest.moc"
