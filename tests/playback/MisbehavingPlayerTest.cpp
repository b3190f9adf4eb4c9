#include "media_client/Playback.h"
#include "media_client/SoundServerTrial.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace ostrelle;
using namespace std::chrono_literals;

/// The client before players that do as each file says.
class MisbehavingPlayerTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void spoiltReportsEndThePlayer_data();
    void spoiltReportsEndThePlayer();
    void playerThatDoesNotStartEndsAtTheDeadline();
    void playerThatFallsSilentEndsAtTheDeadline();
    void stoppedPlayerIsNotHeardOfAgain();
    void missingPlayerIsAFailure();
    void trialsOfTheSoundServerEndWithoutAPlayersWord();

private:
    void play(const QByteArray &content, const QString &helpers = standIns());
    static QString standIns() { return QCoreApplication::applicationDirPath() + QStringLiteral("/stand-in"); }

    QTemporaryDir m_folder;
    ManualTaskScheduler m_scheduler;
    std::unique_ptr<Playback> m_playback;
    std::unique_ptr<QSignalSpy> m_started;
    std::unique_ptr<QSignalSpy> m_moved;
    std::optional<PlaybackError> m_error;
};

void MisbehavingPlayerTest::init()
{
    TestBase::init();
    m_error.reset();
}

void MisbehavingPlayerTest::cleanup()
{
    m_playback.reset();
    QCOMPARE(m_scheduler.pendingCount(), 0);
}

void MisbehavingPlayerTest::play(const QByteArray &content, const QString &helpers)
{
    QFile file(m_folder.filePath(QStringLiteral("sound.wav")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    m_playback = std::make_unique<Playback>(m_scheduler, helpers);
    m_started = std::make_unique<QSignalSpy>(m_playback.get(), &Playback::started);
    m_moved = std::make_unique<QSignalSpy>(m_playback.get(), &Playback::moved);
    connect(m_playback.get(), &Playback::failed, this, [this](PlaybackError error) { m_error = error; });
    m_playback->start(file.fileName());
}

void MisbehavingPlayerTest::spoiltReportsEndThePlayer_data()
{
    QTest::addColumn<PlaybackError>("error");
    for (const char *name : {"die", "garbage", "unknown", "not a number", "for ever", "leave"})
        QTest::newRow(name) << PlaybackError::PlayerLost;
    // Neither of the two knows it.
    QTest::newRow("decline") << PlaybackError::Unplayable;
}

void MisbehavingPlayerTest::spoiltReportsEndThePlayer()
{
    QFETCH(PlaybackError, error);
    if (error == PlaybackError::PlayerLost)
        QTest::ignoreMessage(QtWarningMsg, "the player died, or could not be started");
    play(QTest::currentDataTag());
    QTRY_VERIFY_WITH_TIMEOUT(m_error, 20'000);
    QCOMPARE(*m_error, error);
    QCOMPARE(m_scheduler.pendingCount(), 0);
}

void MisbehavingPlayerTest::playerThatDoesNotStartEndsAtTheDeadline()
{
    play("do nothing");
    m_scheduler.advance(2900ms);
    QVERIFY(!m_error);
    QTest::ignoreMessage(QtWarningMsg, "the player does not answer");
    m_scheduler.advance(200ms);
    QCOMPARE(m_error, PlaybackError::TimedOut);
}

void MisbehavingPlayerTest::playerThatFallsSilentEndsAtTheDeadline()
{
    play("fall silent");
    QTRY_COMPARE_WITH_TIMEOUT(m_moved->size(), 1, 20'000);
    m_scheduler.advance(4900ms);
    QVERIFY(!m_error);
    QTest::ignoreMessage(QtWarningMsg, "the player does not answer");
    m_scheduler.advance(200ms);
    QCOMPARE(m_error, PlaybackError::TimedOut);
}

void MisbehavingPlayerTest::stoppedPlayerIsNotHeardOfAgain()
{
    play("fall silent");
    m_playback->stop();
    QCOMPARE(m_scheduler.pendingCount(), 0);
    play("fall silent");
    QTRY_COMPARE_WITH_TIMEOUT(m_started->size(), 1, 20'000);
    m_playback->stop();
    m_scheduler.advance(1min);
    QVERIFY(!m_error);
}

void MisbehavingPlayerTest::missingPlayerIsAFailure()
{
    QVERIFY(Playback::isInstalled(standIns()));
    QVERIFY(!Playback::isInstalled(m_folder.path()));
    QTest::ignoreMessage(QtWarningMsg, "the player died, or could not be started");
    play("anything", m_folder.path());
    QTRY_VERIFY_WITH_TIMEOUT(m_error, 20'000);
    QCOMPARE(*m_error, PlaybackError::PlayerLost);
}

void MisbehavingPlayerTest::trialsOfTheSoundServerEndWithoutAPlayersWord()
{
    QList<SoundServerAnswer> answers;
    const auto take = [&answers](SoundServerAnswer answer) { answers << answer; };
    const SoundServerTrial ofNone(m_scheduler, Playback::usualPlayer(m_folder.path()), take);
    QTRY_COMPARE_WITH_TIMEOUT(answers, QList{SoundServerAnswer::NoPlayer}, 20'000);
    QCOMPARE(m_scheduler.pendingCount(), 0);
    const SoundServerTrial ofASilentOne(m_scheduler, Playback::usualPlayer(standIns()), take);
    m_scheduler.advance(2900ms);
    QCOMPARE(answers.size(), 1);
    m_scheduler.advance(200ms);
    QCOMPARE(answers, QList({SoundServerAnswer::NoPlayer, SoundServerAnswer::Silent}));
}

OSTRELLE_TEST(MisbehavingPlayerTest)
#include "MisbehavingPlayerTest.moc"
