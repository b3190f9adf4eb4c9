#include "PrivateSoundServer.h"
#include "Sounds.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/Playback.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>

#include <sys/stat.h>

using namespace ostrelle;

/// What comes out of the sound server when a file is played.
class PlaybackTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void everySampleIsHeardOnce();
    void everyKindIsHeardFromBeginToEnd_data();
    void everyKindIsHeardFromBeginToEnd();
    void speakersKeepTheirPlaces_data();
    void speakersKeepTheirPlaces();
    void seekGoesToTheSample();
    void lastOfManySeeksCounts();
    void seekBeforeTheBeginning();
    void stopIsHeardAtOnce();
    void nextFileReplacesTheFirst();
    void truncatedFileEndsWhereItEnds();
    void linkIsWhatItLeadsTo();
    void loudAndBrokenNumbersAreTamed();
    void unplayableFilesFail_data();
    void unplayableFilesFail();
    void serverThatDiesIsAFailure();
    void deadPlayerIsAFailure();
    void deadDecoderIsAnEnd();
    void playersAreShutIn();
    void samplesGoOverTheSocket();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// Plays it, and waits for the first report.
    bool starts(const QString &name);
    /// Waits until a failure was told, and that it is this one.
    bool failsWith(PlaybackError error);
    /// The places of a counting sound that were heard, silence left out.
    std::vector<qint64> heardPlaces(qsizetype begin = 0);
    /// The processes of the running player: the one that is connected, and the one that decodes.
    static std::vector<pid_t> playerProcesses();

    QTemporaryDir m_folder;
    PrivateSoundServer m_server;
    SystemTaskScheduler m_scheduler;
    std::unique_ptr<Recording> m_recording;
    std::unique_ptr<Playback> m_playback;
    std::unique_ptr<QSignalSpy> m_started;
    std::unique_ptr<QSignalSpy> m_moved;
    std::unique_ptr<QSignalSpy> m_ended;
    std::optional<PlaybackError> m_error;
};

void PlaybackTest::initTestCase()
{
    QVERIFY(m_server.start());
    writeCountingSound(path(QStringLiteral("short.wav")), 50'000);
    writeCountingSound(path(QStringLiteral("long.wav")), 20 * PrivateSoundServer::kRate);
    writeCountingSound(path(QStringLiteral("other.wav")), 10 * PrivateSoundServer::kRate, 4'000'000);
}

void PlaybackTest::init()
{
    TestBase::init();
    m_recording = m_server.record();
    QVERIFY(m_recording);
    m_error.reset();
    m_playback = std::make_unique<Playback>(m_scheduler, QCoreApplication::applicationDirPath());
    m_started = std::make_unique<QSignalSpy>(m_playback.get(), &Playback::started);
    m_moved = std::make_unique<QSignalSpy>(m_playback.get(), &Playback::moved);
    m_ended = std::make_unique<QSignalSpy>(m_playback.get(), &Playback::ended);
    connect(m_playback.get(), &Playback::failed, this, [this](PlaybackError error) { m_error = error; });
}

void PlaybackTest::cleanup()
{
    m_playback.reset();
    m_recording.reset();
}

bool PlaybackTest::starts(const QString &name)
{
    m_started->clear();
    m_playback->start(path(name));
    return QTest::qWaitFor([this] { return !m_started->isEmpty() || m_error; }, 20'000) && !m_error;
}

bool PlaybackTest::failsWith(PlaybackError error)
{
    return QTest::qWaitFor([this] { return m_error.has_value(); }, 20'000) && m_error == error;
}

std::vector<qint64> PlaybackTest::heardPlaces(qsizetype begin)
{
    std::vector<qint64> places;
    for (const float sample : m_recording->left(begin)) {
        if (sample != 0)
            places.push_back(placeOf(sample));
    }
    return places;
}

std::vector<pid_t> PlaybackTest::playerProcesses()
{
    std::vector<pid_t> processes;
    pid_t parent = ::getpid();
    for (int depth = 0; depth < 2; ++depth) {
        QByteArray children;
        const QString tasks = QStringLiteral("/proc/%1/task").arg(parent);
        for (const QString &task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile file(tasks + u'/' + task + QStringLiteral("/children"));
            if (file.open(QIODevice::ReadOnly))
                children += file.readAll();
        }
        for (const QByteArray &child : children.split(' ')) {
            QFile name(QStringLiteral("/proc/%1/comm").arg(child.toInt()));
            if (name.open(QIODevice::ReadOnly) && name.readAll().startsWith("ostrelle-media"))
                processes.push_back(parent = child.toInt());
        }
    }
    return processes;
}

void PlaybackTest::everySampleIsHeardOnce()
{
    QVERIFY(starts(QStringLiteral("short.wav")));
    QCOMPARE(m_started->first().first().toDouble(), 50'000.0 / PrivateSoundServer::kRate);
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->isOver(), 10'000);
    const std::vector<qint64> places = heardPlaces();
    QCOMPARE(places.size(), std::size_t(50'000));
    for (std::size_t i = 0; i < places.size(); ++i)
        QCOMPARE(places[i], qint64(i));
    QVERIFY(m_moved->size() >= 3 && m_moved->size() <= 15);
    double before = 0;
    for (const QVariantList &move : *m_moved) {
        QVERIFY(move.first().toDouble() >= before && move.first().toDouble() <= 50'000.0 / PrivateSoundServer::kRate);
        before = move.first().toDouble();
    }
    QVERIFY(before > 0.5);
    QVERIFY(!m_error);
}

void PlaybackTest::everyKindIsHeardFromBeginToEnd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    const auto row = [](const char *name, const char *options = "") {
        const QString text = QString::fromLatin1(options);
        QTest::newRow(name) << QString::fromLatin1(name) << text.split(u' ', Qt::SkipEmptyParts);
    };
    row("whole.wav");
    row("packed.wav", "-c:a adpcm_ms");
    row("whole.aiff");
    row("whole.caf");
    row("whole.flac");
    row("lossy.ogg", "-c:a libvorbis -q:a 8");
    row("lossy.opus", "-c:a libopus -b:a 192k");
    row("constant.mp3", "-c:a libmp3lame -b:a 192k");
    row("variable.mp3", "-c:a libmp3lame -q:a 2 -write_xing 0");
    row("lossy.m4a", "-c:a aac -b:a 192k");
    row("bare.aac", "-c:a aac -b:a 192k");
    row("whole.m4a", "-c:a alac");
    row("lossy.wma", "-c:a wmav2 -b:a 192k");
    row("lossy.ac3", "-c:a ac3 -b:a 384k");
    row("lossy.mkv", "-c:a libopus -b:a 192k");
    row("film.mp4", "-f lavfi -i testsrc=size=320x240:duration=3 -map 0:a -map 1:v -c:v mpeg4 -c:a aac -b:a 192k");
    row("film.mpg", "-f lavfi -i testsrc=size=320x240:duration=3 -map 0:a -map 1:v -c:v mpeg2video -c:a mp2 -b:a 256k");
    // Under a name that belongs to another kind.
    row("really-aac.mp3", "-f mp4 -c:a aac -b:a 192k");
    row("really-flac.m4a", "-f flac");
}

void PlaybackTest::everyKindIsHeardFromBeginToEnd()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    constexpr double kSeconds = 0.6;
    QVERIFY(encodeSweep(path(name), kSeconds, options));
    QVERIFY(starts(name));
    QVERIFY(qAbs(m_started->first().first().toDouble() - kSeconds) < 0.1);
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->isOver(), 10'000);

    constexpr qsizetype kNearBegin = PrivateSoundServer::kRate / 20;
    constexpr auto kNearEnd = static_cast<qsizetype>((kSeconds - 0.12) * PrivateSoundServer::kRate);
    const std::vector<float> sound = sweep(kSeconds);
    const std::vector<float> heard = m_recording->left();
    const qsizetype begin = placeOfPart(sound, kNearBegin, heard);
    const qsizetype end = placeOfPart(sound, kNearEnd, heard);
    QVERIFY(begin >= 0 && end >= 0);
    QVERIFY(qAbs(end - begin - (kNearEnd - kNearBegin)) <= 2);
    // Nothing much is heard before or after it.
    const auto length = static_cast<double>(m_recording->sounding()) / PrivateSoundServer::kRate;
    QVERIFY2(qAbs(length - kSeconds) < 0.1, qPrintable(QString::number(length)));
    const auto first = std::find_if(heard.begin(), heard.end(), [](float sample) { return sample != 0; });
    QVERIFY(qAbs(begin - (first - heard.begin()) - kNearBegin) < PrivateSoundServer::kRate / 15);
}

void PlaybackTest::speakersKeepTheirPlaces_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("codec");
    QTest::newRow("wav") << QStringLiteral("around.wav") << QStringLiteral("pcm_s16le");
    QTest::newRow("flac") << QStringLiteral("around.flac") << QStringLiteral("flac");
    QTest::newRow("vorbis") << QStringLiteral("around.ogg") << QStringLiteral("libvorbis");
    QTest::newRow("opus") << QStringLiteral("around.opus") << QStringLiteral("libopus");
    QTest::newRow("ac3") << QStringLiteral("around.ac3") << QStringLiteral("ac3");
}

/// Of six channels only the rear left one sounds: the right side must stay silent.
void PlaybackTest::speakersKeepTheirPlaces()
{
    QFETCH(QString, name);
    QFETCH(QString, codec);
    const QString rear = QStringLiteral("pan=5.1|FL=0*c0|FR=0*c0|FC=0*c0|LFE=0*c0|BL=c0|BR=0*c0");
    QVERIFY(encodeSweep(
        path(name), 0.6,
        {QStringLiteral("-af"), rear, QStringLiteral("-c:a"), codec, QStringLiteral("-ac"), QStringLiteral("6")}));
    QVERIFY(starts(name));
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty() && m_recording->isOver(), 10'000);
    const double left = Recording::loudness(m_recording->left());
    const double right = Recording::loudness(m_recording->right());
    QVERIFY2(left > 0.02 && right < left / 20, qPrintable(QStringLiteral("%1 and %2").arg(left).arg(right)));
}

void PlaybackTest::seekGoesToTheSample()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 2, 10'000);
    const qsizetype before = m_moved->size();
    const qsizetype heardBefore = m_recording->size();
    m_playback->seek(12.5);
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= before + 4, 10'000);
    for (qsizetype i = before; i < m_moved->size(); ++i)
        QVERIFY(m_moved->at(i).first().toDouble() >= 12.5 && m_moved->at(i).first().toDouble() < 14);
    m_playback->seek(19.9);
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->isOver(), 10'000);

    const std::vector<qint64> after = heardPlaces(heardBefore);
    const auto sought = std::find(after.begin(), after.end(), 600'000);
    QVERIFY2(sought - after.begin() < 3 * PrivateSoundServer::kRate / 10, "what was written ahead is heard");
    const std::vector<qint64> places = heardPlaces();
    std::vector<qint64> jumps;
    for (std::size_t i = 1; i < places.size(); ++i) {
        if (places[i] != places[i - 1] + 1)
            jumps.push_back(places[i]);
    }
    QCOMPARE(jumps, (std::vector<qint64>{600'000, 955'200}));
    QCOMPARE(places.back(), 20 * PrivateSoundServer::kRate - 1);
}

void PlaybackTest::lastOfManySeeksCounts()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    for (int i = 0; i < 200; ++i)
        m_playback->seek(1 + i * 0.05);
    m_playback->seek(15);
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 3, 10'000);
    for (const QVariantList &move : *m_moved)
        QVERIFY(move.first().toDouble() >= 15);
    // To the end, also beyond it.
    m_playback->seek(99);
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QVERIFY(!m_error);
}

void PlaybackTest::seekBeforeTheBeginning()
{
    m_playback->start(path(QStringLiteral("long.wav")));
    m_playback->seek(10);
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 3, 10'000);
    QVERIFY(m_moved->last().first().toDouble() >= 10);
    QTRY_VERIFY_WITH_TIMEOUT(!heardPlaces().empty() && heardPlaces().back() > 10 * PrivateSoundServer::kRate, 10'000);
}

void PlaybackTest::stopIsHeardAtOnce()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 5, 10'000);
    const qsizetype before = m_recording->size();
    m_playback->stop();
    const qsizetype moves = m_moved->size();
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->isOver(0.7), 10'000);
    // The server had half a second more.
    QVERIFY2(m_recording->sounding(before) < 3 * PrivateSoundServer::kRate / 10, "what was written ahead is heard");
    QCOMPARE(m_moved->size(), moves);
    QVERIFY(m_ended->isEmpty() && !m_error);
    QTRY_VERIFY_WITH_TIMEOUT(playerProcesses().empty(), 10'000);
}

void PlaybackTest::nextFileReplacesTheFirst()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 3, 10'000);
    QVERIFY(starts(QStringLiteral("other.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 8, 10'000);
    const std::vector<qint64> places = heardPlaces();
    const auto isOfOther = [](qint64 place) { return place >= 4'000'000; };
    const auto first = std::find_if(places.begin(), places.end(), isOfOther);
    QVERIFY(first != places.begin() && first != places.end());
    QCOMPARE(*first, 4'000'000);
    QVERIFY(std::all_of(first, places.end(), isOfOther));
}

void PlaybackTest::truncatedFileEndsWhereItEnds()
{
    writeCountingSound(path(QStringLiteral("cut.wav")), 30'000, 0, 500'000);
    QVERIFY(starts(QStringLiteral("cut.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->isOver(), 10'000);
    QCOMPARE(heardPlaces().size(), std::size_t(30'000));

    QVERIFY(encodeSweep(path(QStringLiteral("whole.mp3")), 3, {}));
    QFile whole(path(QStringLiteral("whole.mp3")));
    QVERIFY(whole.open(QIODevice::ReadWrite) && whole.resize(whole.size() / 2));
    m_ended->clear();
    QVERIFY(starts(QStringLiteral("whole.mp3")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QVERIFY(!m_error);
}

void PlaybackTest::linkIsWhatItLeadsTo()
{
    QVERIFY(QFile::link(path(QStringLiteral("short.wav")), path(QStringLiteral("link.wav"))));
    QVERIFY(starts(QStringLiteral("link.wav")));
}

void PlaybackTest::loudAndBrokenNumbersAreTamed()
{
    writeCountingSound(path(QStringLiteral("wild.wav")), 10'000);
    QFile file(path(QStringLiteral("wild.wav")));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(44));
    for (int frame = 0; frame < 10'000; ++frame) {
        const float left = frame % 2 == 0 ? 1e30F : std::numeric_limits<float>::quiet_NaN();
        const std::array<float, 2> samples{left, -std::numeric_limits<float>::infinity()};
        file.write(reinterpret_cast<const char *>(samples.data()), sizeof samples);
    }
    file.close();
    QVERIFY(starts(QStringLiteral("wild.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty() && m_recording->isOver(), 10'000);
    for (const float sample : m_recording->left())
        QVERIFY(sample == 0 || sample == 1);
    for (const float sample : m_recording->right())
        QVERIFY(sample == 0 || sample == -1);
}

void PlaybackTest::unplayableFilesFail_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<PlaybackError>("error");
    const auto put = [this](const QString &name, const QByteArray &bytes) {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    QByteArray noise;
    for (unsigned i = 0; i < 100'000; ++i)
        noise += static_cast<char>((i * 2654435761U) >> 13U);
    QFile sound(path(QStringLiteral("short.wav")));
    QVERIFY(sound.open(QIODevice::ReadOnly));
    put(QStringLiteral("text.mp3"), "Nothing to be heard.\n");
    put(QStringLiteral("empty.flac"), "");
    put(QStringLiteral("noise.m4a"), noise);
    put(QStringLiteral("noise.wav"), sound.read(20) + noise);
    put(QStringLiteral("list.wav"), "#EXTM3U\n/etc/passwd\n");
    ::mkfifo(QFile::encodeName(path(QStringLiteral("pipe.wav"))).constData(), 0600);
    QDir(m_folder.path()).mkdir(QStringLiteral("folder.wav"));
    QFile::link(path(QStringLiteral("loop.wav")), path(QStringLiteral("loop.wav")));
    const auto row = [](const char *name, PlaybackError error) {
        QTest::newRow(name) << QString::fromLatin1(name) << error;
    };
    row("text.mp3", PlaybackError::Unplayable);
    row("empty.flac", PlaybackError::Unplayable);
    row("noise.m4a", PlaybackError::Unplayable);
    row("noise.wav", PlaybackError::Unplayable);
    row("list.wav", PlaybackError::Unplayable);
    row("pipe.wav", PlaybackError::Unreadable);
    row("folder.wav", PlaybackError::Unreadable);
    row("loop.wav", PlaybackError::Unreadable);
    row("missing.wav", PlaybackError::Unreadable);
}

void PlaybackTest::unplayableFilesFail()
{
    QFETCH(QString, name);
    QFETCH(PlaybackError, error);
    m_playback->start(path(name));
    QVERIFY(failsWith(error));
    QVERIFY(m_started->isEmpty() && m_ended->isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(playerProcesses().empty(), 10'000);
    QCOMPARE(m_recording->sounding(), qsizetype(0));
}

void PlaybackTest::serverThatDiesIsAFailure()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 2, 10'000);
    QTest::ignoreMessage(QtWarningMsg, "the sound server went away");
    m_server.kill();
    QVERIFY(failsWith(PlaybackError::SoundServerLost));

    m_error.reset();
    QTest::ignoreMessage(QtWarningMsg, "there is no sound server");
    m_playback->start(path(QStringLiteral("long.wav")));
    QVERIFY(failsWith(PlaybackError::NoSoundServer));

    m_error.reset();
    QVERIFY(m_server.start());
    m_recording = m_server.record();
    QVERIFY(m_recording);
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_recording->sounding() > 0, 10'000);
}

void PlaybackTest::deadPlayerIsAFailure()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    const std::vector<pid_t> processes = playerProcesses();
    QCOMPARE(processes.size(), std::size_t(2));
    QTest::ignoreMessage(QtWarningMsg, "the player died, or could not be started");
    QCOMPARE(::kill(processes[0], SIGKILL), 0);
    QVERIFY(failsWith(PlaybackError::PlayerLost));
    // And the other with it.
    QTRY_VERIFY_WITH_TIMEOUT(::kill(processes[1], 0) != 0, 10'000);
}

void PlaybackTest::deadDecoderIsAnEnd()
{
    QVERIFY(starts(QStringLiteral("long.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(m_moved->size() >= 2, 10'000);
    QCOMPARE(::kill(playerProcesses().at(1), SIGKILL), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    QVERIFY(!m_error);
}

void PlaybackTest::playersAreShutIn()
{
    QVERIFY(encodeSweep(path(QStringLiteral("long.m4a")), 5, {}));
    for (const QString &name : {QStringLiteral("long.wav"), QStringLiteral("long.m4a")}) {
        QVERIFY(starts(name));
        const std::vector<pid_t> processes = playerProcesses();
        QCOMPARE(processes.size(), std::size_t(2));
        for (const pid_t process : processes) {
            QFile file(QStringLiteral("/proc/%1/status").arg(process));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray status = file.readAll();
            QVERIFY(status.contains("NoNewPrivs:\t1"));
#if !defined(__SANITIZE_ADDRESS__)
            QVERIFY(status.contains("Seccomp:\t2"));
#endif
        }
    }
}

void PlaybackTest::samplesGoOverTheSocket()
{
    // The recorder, whose connection shares memory, is gone.
    m_recording.reset();
    const qsizetype before = m_server.log().size();
    QVERIFY(starts(QStringLiteral("short.wav")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_ended->isEmpty(), 10'000);
    const QByteArray said = m_server.log().mid(before);
    QVERIFY(said.contains("Negotiated SHM: no"));
    QVERIFY(!said.contains("Negotiated SHM: yes"));
}

OSTRELLE_TEST(PlaybackTest)
#include "PlaybackTest.moc"
