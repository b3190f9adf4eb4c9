#include "PrivateSoundServer.h"
#include "Sounds.h"

#include "foundation/SystemTaskScheduler.h"
#include "inspectors/AudioPreviewService.h"
#include "support/FakeAlertSound.h"
#include "support/FakeHaptics.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

using namespace ostrelle;

/// What the file tools see of playing.
class AudioPreviewServiceTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void playsUntilItsEnd();
    void toggledAgainStops();
    void stopsOnlyWhatIsNamed();
    void anotherFileTakesOver();
    void seeksAtOnce();
    void failureSoundsTheAlertAndChangesNothing();
    void nextToggleTriesAgain();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    AudioPreviewService &service() { return *m_service; }
    bool isHeard() { return service().position() > 0; }

    QTemporaryDir m_folder;
    PrivateSoundServer m_server;
    SystemTaskScheduler m_scheduler;
    FakeHaptics m_haptics;
    FakeAlertSound m_alert;
    std::unique_ptr<AudioPreviewService> m_service;
    std::unique_ptr<QSignalSpy> m_failed;
    int m_ticks = 0;
};

void AudioPreviewServiceTest::initTestCase()
{
    QVERIFY(m_server.start());
    writeCountingSound(path("short.wav"), PrivateSoundServer::kRate / 2);
    writeCountingSound(path("long.wav"), 20 * PrivateSoundServer::kRate);
    writeCountingSound(path("empty.wav"), 0);
}

void AudioPreviewServiceTest::init()
{
    TestBase::init();
    m_service =
        std::make_unique<AudioPreviewService>(m_scheduler, QCoreApplication::applicationDirPath(), m_haptics, m_alert);
    m_failed = std::make_unique<QSignalSpy>(m_service.get(), &AudioPreview::failed);
    m_ticks = m_haptics.tickCount();
}

void AudioPreviewServiceTest::playsUntilItsEnd()
{
    std::vector<QString> paths;
    const auto watch = service().bindablePlayingPath().addNotifier([&] { paths.push_back(service().playingPath()); });
    service().toggle(path("short.wav"));
    QCOMPARE(service().playingPath(), path("short.wav"));
    QTRY_COMPARE_WITH_TIMEOUT(service().length(), 0.5, 10'000);
    QCOMPARE(m_haptics.tickCount(), m_ticks + 1);
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(service().playingPath().isEmpty(), 10'000);
    QCOMPARE(paths, (std::vector{path("short.wav"), QString()}));
    QCOMPARE(service().position(), 0.0);
    QCOMPARE(service().length(), 0.0);
    QVERIFY(m_failed->isEmpty());

    // Nothing to be heard is no failure.
    service().toggle(path("empty.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(service().playingPath().isEmpty(), 10'000);
    QVERIFY(m_failed->isEmpty());
}

void AudioPreviewServiceTest::toggledAgainStops()
{
    service().toggle(path("long.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
    service().toggle(path("long.wav"));
    QVERIFY(service().playingPath().isEmpty());
    QCOMPARE(service().position(), 0.0);

    // Also before it is heard.
    service().toggle(path("long.wav"));
    service().toggle(path("long.wav"));
    QVERIFY(service().playingPath().isEmpty());
    service().toggle(path("long.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
    QCOMPARE(m_haptics.tickCount(), m_ticks + 2);
}

void AudioPreviewServiceTest::stopsOnlyWhatIsNamed()
{
    service().toggle(path("long.wav"));
    service().stop(path("short.wav"));
    QCOMPARE(service().playingPath(), path("long.wav"));
    service().stop(path("long.wav"));
    QVERIFY(service().playingPath().isEmpty());
    service().toggle(path("long.wav"));
    service().stop();
    QVERIFY(service().playingPath().isEmpty());
    service().seek(3);
    QCOMPARE(service().position(), 0.0);
}

void AudioPreviewServiceTest::anotherFileTakesOver()
{
    service().toggle(path("long.wav"));
    QTRY_COMPARE_WITH_TIMEOUT(service().length(), 20.0, 10'000);
    service().toggle(path("short.wav"));
    QCOMPARE(service().playingPath(), path("short.wav"));
    QCOMPARE(service().length(), 0.0);
    QTRY_COMPARE_WITH_TIMEOUT(service().length(), 0.5, 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(service().playingPath().isEmpty(), 10'000);
}

void AudioPreviewServiceTest::seeksAtOnce()
{
    service().toggle(path("long.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
    double least = 12;
    const auto watch = service().bindablePosition().addNotifier([&] { least = std::min(least, service().position()); });
    service().seek(12);
    QCOMPARE(service().position(), 12.0);
    QTRY_VERIFY_WITH_TIMEOUT(service().position() > 12.3, 10'000);
    QCOMPARE(least, 12.0);
    service().seek(-5);
    QCOMPARE(service().position(), 0.0);
    service().seek(500);
    QCOMPARE(service().position(), 20.0);
    QTRY_VERIFY_WITH_TIMEOUT(service().playingPath().isEmpty(), 10'000);
}

void AudioPreviewServiceTest::failureSoundsTheAlertAndChangesNothing()
{
    const int alerts = m_alert.count();
    service().toggle(path("missing.wav"));
    QTRY_COMPARE_WITH_TIMEOUT(m_failed->size(), 1, 10'000);
    QCOMPARE(m_failed->first().first().toString(), path("missing.wav"));
    QCOMPARE(m_alert.count(), alerts + 1);
    QCOMPARE(m_haptics.tickCount(), m_ticks);
    QVERIFY(service().playingPath().isEmpty());
}

void AudioPreviewServiceTest::nextToggleTriesAgain()
{
    service().toggle(path("long.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
    QTest::ignoreMessage(QtWarningMsg, "the sound server went away");
    m_server.kill();
    QTRY_COMPARE_WITH_TIMEOUT(m_failed->size(), 1, 10'000);
    QVERIFY(service().playingPath().isEmpty());
    QTest::ignoreMessage(QtWarningMsg, "there is no sound server");
    service().toggle(path("long.wav"));
    QTRY_COMPARE_WITH_TIMEOUT(m_failed->size(), 2, 10'000);
    QVERIFY(m_server.start());
    service().toggle(path("long.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 10'000);
}

OSTRELLE_TEST(AudioPreviewServiceTest)
#include "AudioPreviewServiceTest.moc"
