#include "MediaFixture.h"
#include "SoundFiles.h"
#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "support/Pattern.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>
#include <QtEndian>

#include <memory>
#include <optional>

#include <sys/stat.h>

using namespace ostrelle;

/// Files of every kind, through the real helpers.
class TempoOfFilesTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void isTheSameInEveryKind_data();
    void isTheSameInEveryKind();
    void isTheSameInEveryRun();
    void onlyTheExcerptIsHeard_data();
    void onlyTheExcerptIsHeard();
    void filesWithoutASoundHaveNone_data();
    void filesWithoutASoundHaveNone();
    void spoiltFilesCostNoOther_data();
    void spoiltFilesCostNoOther();

private:
    std::optional<double> tempoOf(const QString &path);
    QString fileOf(const QByteArray &bytes, const QString &name);
    QByteArray contentOf(const QString &name, const QStringList &options = {});

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<MediaClient> m_client;
    QString m_song; ///< 40 seconds
    QString m_long; ///< of three parts with tempi of their own
};

namespace {

constexpr int kPatience = 40000; // the sanitizers' helpers are slow to start
constexpr double kTempo = 128;

void play(Pattern &pattern)
{
    for (int beat = 0; beat < pattern.beats(); ++beat) {
        pattern.addKick(beat, 0.6F);
        pattern.addHat(beat + 0.5, 0.3F);
        if (beat % 2 == 1)
            pattern.addSnare(beat, 0.3F);
    }
}

void addPart(std::vector<float> &samples, double bpm, double seconds)
{
    Pattern part(bpm, seconds);
    play(part);
    samples.insert(samples.end(), part.samples().begin(), part.samples().end());
}

struct Kind
{
    const char *name;
    const char *options;
};

constexpr Kind kKinds[] = {
    {"s.wav", ""},
    {"float.wav", "-c:a pcm_f32le"},
    {"s.aiff", ""},
    {"s.caf", ""},
    {"s.flac", ""},
    {"constant.mp3", "-b:a 160k"},
    {"variable.mp3", "-q:a 3"},
    {"bare.mp3", "-q:a 3 -write_xing 0 -id3v2_version 0"},
    {"s.mp2", ""},
    {"vorbis.ogg", "-c:a libvorbis"},
    {"s.opus", ""},
    {"s.m4a", ""},
    {"alac.m4a", "-c:a alac"},
    {"s.aac", ""},
    {"s.wma", ""},
    {"s.mkv", "-c:a libvorbis"},
    {"video.mp4", "-f lavfi -i testsrc=s=64x64:r=5 -shortest -c:v mpeg4"},
    {"adpcm.wav", "-c:a adpcm_ms"},
    {"mp3.wav", "-c:a libmp3lame"},
};

QStringList optionsOf(const Kind &kind)
{
    return QString::fromLatin1(kind.options).split(u' ', Qt::SkipEmptyParts);
}

/// A WAV header with figures of its own, before a second of silence.
QByteArray wavThatClaims(quint16 channels, quint32 rate, quint32 dataSize)
{
    QByteArray bytes = wavOf(std::vector<float>(11'025));
    qToLittleEndian(channels, bytes.data() + 22);
    qToLittleEndian(rate, bytes.data() + 24);
    qToLittleEndian(dataSize, bytes.data() + 40);
    return bytes;
}

} // namespace

void TempoOfFilesTest::initTestCase()
{
    m_home = std::make_unique<TemporaryHome>();
    std::vector<float> samples;
    addPart(samples, kTempo, 40);
    writeFile(m_home->path(QStringLiteral("low.wav")), wavOf(samples));
    samples.clear();
    addPart(samples, 90, 30);
    addPart(samples, kTempo, 45);
    addPart(samples, 105, 60);
    writeFile(m_home->path(QStringLiteral("low-long.wav")), wavOf(samples));
    const QStringList stereo{QStringLiteral("-ar"), QStringLiteral("44100"), QStringLiteral("-ac"),
                             QStringLiteral("2")};
    m_song = m_home->path(QStringLiteral("song.wav"));
    m_long = m_home->path(QStringLiteral("long.wav"));
    convertSound(m_home->path(QStringLiteral("low.wav")), m_song, stereo);
    convertSound(m_home->path(QStringLiteral("low-long.wav")), m_long, stereo);
}

void TempoOfFilesTest::init()
{
    TestBase::init();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client = std::make_unique<MediaClient>(
        *m_scheduler, MediaClient::Places{helperFolder(), m_home->path(QStringLiteral("thumbnails"))});
}

void TempoOfFilesTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
    QCOMPARE(childCount(), 0);
}

std::optional<double> TempoOfFilesTest::tempoOf(const QString &path)
{
    bool isAnswered = false;
    std::optional<double> tempo;
    const MediaRequest request = m_client->tempo(path, [&](std::optional<double> bpm) {
        tempo = bpm;
        isAnswered = true;
    });
    return QTest::qWaitFor([&isAnswered] { return isAnswered; }, kPatience) ? tempo : std::optional(-1.0);
}

QString TempoOfFilesTest::fileOf(const QByteArray &bytes, const QString &name)
{
    writeFile(m_home->path(name), bytes);
    return m_home->path(name);
}

QByteArray TempoOfFilesTest::contentOf(const QString &name, const QStringList &options)
{
    const QString path = m_home->path(QStringLiteral("content-") + name);
    if (!QFile::exists(path))
        convertSound(m_song, path, options);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TempoOfFilesTest::isTheSameInEveryKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    for (const Kind &kind : kKinds)
        QTest::newRow(kind.name) << QString::fromLatin1(kind.name) << optionsOf(kind);
}

void TempoOfFilesTest::isTheSameInEveryKind()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    convertSound(m_song, m_home->path(name), options);
    QCOMPARE(tempoOf(m_home->path(name)), std::optional(kTempo));
}

void TempoOfFilesTest::isTheSameInEveryRun()
{
    // A tempo with a decimal, in a kind of each helper, by one process and by two.
    std::vector<float> samples;
    addPart(samples, 103.7, 20);
    const QString wav = fileOf(wavOf(samples), QStringLiteral("broken.wav"));
    const QString m4a = m_home->path(QStringLiteral("broken.m4a"));
    convertSound(wav, m4a);
    for (const QString &path : {wav, m4a}) {
        const std::optional<double> first = tempoOf(path);
        QVERIFY(first && *first != std::floor(*first));
        QCOMPARE(tempoOf(path), first);
        m_client.reset();
        init();
        QCOMPARE(tempoOf(path), first);
    }
}

void TempoOfFilesTest::onlyTheExcerptIsHeard_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    // One for each way to go to a place.
    for (const Kind &kind : kKinds) {
        const QByteArrayView name(kind.name);
        for (const char *chosen :
             {"s.flac", "variable.mp3", "vorbis.ogg", "s.opus", "s.m4a", "s.aac", "s.wma", "s.mkv"}) {
            if (name == chosen)
                QTest::newRow(chosen) << QString::fromLatin1(name) << optionsOf(kind);
        }
    }
}

void TempoOfFilesTest::onlyTheExcerptIsHeard()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    const QString path = m_home->path(QStringLiteral("long-") + name);
    convertSound(m_long, path, options);
    QCOMPARE(tempoOf(path), std::optional(kTempo));
}

void TempoOfFilesTest::filesWithoutASoundHaveNone_data()
{
    QTest::addColumn<QString>("path");
    const auto row = [this](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << fileOf(bytes, QString::fromLatin1(name));
    };
    const QByteArray flac = contentOf(QStringLiteral("s.flac"));
    row("empty.mp3", {});
    row("text.mp3", "no sound");
    row("picture.wav", "\x89PNG\r\n\x1a\n");
    row("silence.wav", wavOf(std::vector<float>(20 * 11'025)));
    row("short.wav", wavOf(noise(11'025)));
    row("one byte of a head.flac", "fLaC");
    row("the begin of a song.flac", flac.left(flac.size() / 5));
    row("the begin of a song.m4a", contentOf(QStringLiteral("s.m4a")).left(200'000));
    row("the begin of a song.mp3", contentOf(QStringLiteral("s.mp3")).left(20'000));
    row("four gigabytes.wav", wavThatClaims(1, 11'025, 0xffffffff));
    row("one frame a second.wav", wavThatClaims(1, 1, 22'050));
    row("two thousand million frames a second.wav", wavThatClaims(1, 0x7fffffff, 22'050));
    row("sixty-five thousand channels.wav", wavThatClaims(0xffff, 44'100, 22'050));
    row("no channels.wav", wavThatClaims(0, 44'100, 22'050));
    row("a list of other files.m3u", "#EXTM3U\n" + QFile::encodeName(m_song) + '\n');
    QTest::newRow("folder") << m_home->path();
    QTest::newRow("missing") << m_home->path(QStringLiteral("missing.wav"));
    const QString fifo = m_home->path(QStringLiteral("fifo.wav"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QTest::newRow("fifo") << fifo;
}

void TempoOfFilesTest::filesWithoutASoundHaveNone()
{
    QFETCH(QString, path);
    QCOMPARE(tempoOf(path), std::nullopt);
}

void TempoOfFilesTest::spoiltFilesCostNoOther_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const Kind &kind : kKinds)
        QTest::newRow(kind.name) << contentOf(QString::fromLatin1(kind.name), optionsOf(kind));
}

/// With bytes turned over in the head and all along, any answer is right.
void TempoOfFilesTest::spoiltFilesCostNoOther()
{
    QFETCH(QByteArray, bytes);
    quint32 random = 1;
    for (int round = 0; round < 3; ++round) {
        QByteArray turned = bytes;
        for (int i = 0; i < 12; ++i) {
            random = random * 1664525 + 1013904223;
            turned[qsizetype(random >> 8) % (i < 6 ? 600 : turned.size())] = char(random >> 24);
        }
        const std::optional<double> tempo = tempoOf(fileOf(turned, QStringLiteral("turned")));
        QVERIFY(!tempo || *tempo > 0);
    }
    QCOMPARE(tempoOf(m_song), std::optional(kTempo));
}

OSTRELLE_TEST(TempoOfFilesTest)
#include "TempoOfFilesTest.moc"
