#include "MediaFixture.h"
#include "SoundTools.h"

#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cmath>
#include <memory>

using namespace ostrelle;

/// Files made here by other programs, through the real helpers. What is true of them is known from how they were made.
class AudioFactsTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void factsAreThoseOfTheStream_data();
    void factsAreThoseOfTheStream();
    void piecesOfStreamsAreKnown();
    void staleCountsOfFramesAreNotBelieved();
    void tagsBehindTheSoundDoNotCount_data();
    void tagsBehindTheSoundDoNotCount();
    void contentCountsAndNotTheName();
    void notesHaveNoSamples();
    void whatIsNoSoundIsRefused_data();
    void whatIsNoSoundIsRefused();
    void cutFilesHaveTheFactsOfWhatIsLeft();
    void everyDamageIsSurvived_data();
    void everyDamageIsSurvived();

private:
    QString path(const QString &name) const { return m_home->path(name); }
    QByteArray made(const QString &command, const QString &name);
    std::variant<AudioInfo, MediaFailure> factsOf(const QString &name, const QByteArray &bytes);

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<MediaClient> m_client;
};

namespace {

constexpr double kSeconds = 2.5;
/// One that states no figure of its own.
constexpr int kBySize = 0;
constexpr int kNone = -1;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addRow(const char *name, const char *command, double rate, int channels, int depth, double seconds,
            double tolerance, int kbps)
{
    QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(command) << rate << channels << depth
                        << seconds << tolerance << kbps;
}

/// Samples as they are: everything is exact.
void addPlain(const char *name, const char *command, double rate, int channels, int depth)
{
    addRow(name, command, rate, channels, depth, kSeconds, 1e-9, int(std::lround(rate * channels * depth / 1000)));
}

void addCoded(const char *name, const char *command, double seconds, double tolerance, int kbps)
{
    addRow(name, command, 44100, 2, kNone, seconds, tolerance, kbps);
}

} // namespace

void AudioFactsTest::initTestCase()
{
    m_home = std::make_unique<TemporaryHome>();
    runTool(m_home->path(), QStringLiteral("sox -R -n -r 44100 -c 2 -b 16 in.wav synth 2.5 pluck A3 pluck E4 gain -6"));
    runTool(m_home->path(), QStringLiteral("sox -R -n -r 16000 -c 1 -b 16 speech.wav synth 2.5 pinknoise gain -6"));
    runTool(m_home->path(), QStringLiteral("sox -R -n -r 44100 -c 2 -b 16 noise.wav synth 2.5 pinknoise gain -6"));
}

void AudioFactsTest::init()
{
    TestBase::init();
    m_scheduler = std::make_unique<SystemTaskScheduler>();
    m_client = std::make_unique<MediaClient>(*m_scheduler, MediaClient::Places{helperFolder(), m_home->path()});
}

void AudioFactsTest::cleanup()
{
    m_client.reset();
    m_scheduler.reset();
}

void AudioFactsTest::cleanupTestCase()
{
    m_home.reset();
}

QByteArray AudioFactsTest::made(const QString &command, const QString &name)
{
    runTool(m_home->path(), command);
    return contentOf(path(name));
}

std::variant<AudioInfo, MediaFailure> AudioFactsTest::factsOf(const QString &name, const QByteArray &bytes)
{
    writeFile(path(name), bytes);
    return audioInfoOf(*m_client, path(name));
}

void AudioFactsTest::factsAreThoseOfTheStream_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("command");
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("depth");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("tolerance");
    QTest::addColumn<int>("kbps");
#define OSTRELLE_FFMPEG "ffmpeg -v error -y -nostdin -i in.wav "

    addPlain("8.wav", "sox in.wav -b 8 8.wav", 44100, 2, 8);
    addPlain("16.wav", "cp in.wav 16.wav", 44100, 2, 16);
    addPlain("24.wav", "sox in.wav -r 96000 -b 24 24.wav", 96000, 2, 24);
    addPlain("32.wav", "sox in.wav -b 32 32.wav", 44100, 2, 32);
    addPlain("float.wav", "sox in.wav -e float -b 32 float.wav", 44100, 2, 32);
    addPlain("double.wav", "sox in.wav -e float -b 64 double.wav", 44100, 2, 64);
    addPlain("extensible.wav", "sox in.wav -b 24 extensible.wav remix 1 2 1 2 1 2", 44100, 6, 24);
    addPlain("rf64.wav", OSTRELLE_FFMPEG "-rf64 always rf64.wav", 44100, 2, 16);
    addPlain("bwf.wav", OSTRELLE_FFMPEG "-write_bext 1 -metadata description=b bwf.wav", 44100, 2, 16);
    addPlain("piped.wav", OSTRELLE_FFMPEG "-f wav - > piped.wav", 44100, 2, 16);
    addPlain("companded.wav", "sox in.wav -e mu-law companded.wav", 44100, 2, 8);
    addPlain("16.aiff", "sox in.wav 16.aiff", 44100, 2, 16);
    addPlain("24.aiff", "sox speech.wav -b 24 24.aiff", 16000, 1, 24);
    addPlain("swapped.aifc", OSTRELLE_FFMPEG "-c:a pcm_s16le swapped.aifc", 44100, 2, 16);
    addPlain("float.aifc", OSTRELLE_FFMPEG "-c:a pcm_f32be float.aifc", 44100, 2, 32);
    addPlain("24.caf", OSTRELLE_FFMPEG "-c:a pcm_s24le 24.caf", 44100, 2, 24);
    addPlain("16.au", "sox in.wav 16.au", 44100, 2, 16);
    addPlain("16.mka", OSTRELLE_FFMPEG "-c:a pcm_s16le 16.mka", 44100, 2, 16);
    addCoded("adpcm.wav", OSTRELLE_FFMPEG "-c:a adpcm_ms adpcm.wav", kSeconds, 0.05, kBySize);

    addCoded("blocks.wav", "sox in.wav -e ms-adpcm blocks.wav", kSeconds, 1e-9, kBySize);

    // The encoder's delay and padding do not count, where the file tells them.
    const double padded = std::ceil(kSeconds * 44100 / 1152 + 1) * 1152 / 44100;
    addCoded("constant.mp3", "lame --quiet -b 128 in.wav constant.mp3", kSeconds, 1e-9, 128);
    addCoded("variable.mp3", "lame --quiet -V 2 in.wav variable.mp3", kSeconds, 1e-9, kBySize);
    addCoded("average.mp3", "lame --quiet --abr 160 in.wav average.mp3", kSeconds, 1e-9, kBySize);
    addCoded("untold.mp3", "lame --quiet -t -b 192 in.wav untold.mp3", padded, 0.03, 192);
    addCoded("untold-variable.mp3", "lame --quiet -t -V 2 in.wav untold-variable.mp3", padded, 0.03, kBySize);
    addRow("low.mp3", "lame --quiet -b 64 speech.wav low.mp3", 16000, 1, kNone, kSeconds, 1e-9, 64);
    addRow("lowest.mp3", "lame --quiet -t -b 16 --resample 8 speech.wav lowest.mp3", 8000, 1, kNone, kSeconds, 0.2, 16);
    addCoded("tagged1.mp3", "lame --quiet -b 128 --id3v1-only --tt name in.wav tagged1.mp3", kSeconds, 1e-9, 128);
    addCoded("second.mp2", OSTRELLE_FFMPEG "-c:a mp2 -b:a 192k second.mp2", kSeconds, 0.03, 192);

    addCoded("adts.aac", OSTRELLE_FFMPEG "-c:a aac -b:a 128k adts.aac", kSeconds, 0.05, kBySize);
    addCoded("aac.m4a", OSTRELLE_FFMPEG "-c:a aac -b:a 96k aac.m4a", kSeconds, 1e-9, 96);
    addCoded("aac.mp4", OSTRELLE_FFMPEG "-c:a aac -b:a 96k -movflags +faststart aac.mp4", kSeconds, 1e-9, 96);
    addCoded("fragments.mp4", OSTRELLE_FFMPEG "-c:a aac -movflags frag_keyframe+empty_moov fragments.mp4", kSeconds,
             0.05, 128);
    addCoded("alac.m4a", OSTRELLE_FFMPEG "-c:a alac alac.m4a", kSeconds, 1e-9, kBySize);
    addCoded("flac.flac", "flac -s in.wav -o flac.flac", kSeconds, 1e-9, kBySize);
    addCoded("piped.flac", OSTRELLE_FFMPEG "-f flac - > piped.flac", kSeconds, 1e-9, kBySize);
    addCoded("vorbis.ogg", "oggenc -Q -b 128 in.wav -o vorbis.ogg", kSeconds, 1e-9, 128);
    addRow("opus.opus", "opusenc --quiet in.wav opus.opus", 48000, 2, kNone, kSeconds, 1e-4, kBySize);
    addRow("speex.spx", "speexenc --quiet speech.wav speex.spx", 16000, 1, kNone, kSeconds, 1e-9, kBySize);

    addCoded("wma.wma", OSTRELLE_FFMPEG "-c:a wmav2 -b:a 128k wma.wma", kSeconds, 0.1, 128);
    addCoded("ac3.ac3", OSTRELLE_FFMPEG "-c:a ac3 -b:a 192k ac3.ac3", kSeconds, 0.05, 192);
    addCoded("vorbis.mka", OSTRELLE_FFMPEG "-c:a libvorbis vorbis.mka", kSeconds, 0.05, kBySize);
    addCoded("flac.oga", "flac -s --ogg in.wav -o flac.oga", kSeconds, 1e-4, kBySize);
#define OSTRELLE_FILM "ffmpeg -v error -y -nostdin -f lavfi -i testsrc=d=2.5:s=64x48:r=10 "
    addCoded("film.mp4", OSTRELLE_FILM "-i in.wav -c:v mpeg4 -c:a aac -b:a 96k film.mp4", kSeconds, 0.01, 96);
    addCoded("film.avi", OSTRELLE_FILM "-i in.wav -c:v mpeg4 -c:a mp2 -b:a 128k film.avi", kSeconds, 0.1, 128);
    // Of these the headers do not tell it, and the size is mostly that of the pictures.
    addCoded("film.mkv", OSTRELLE_FILM "-i in.wav -c:v mjpeg -c:a ac3 -b:a 192k film.mkv", kSeconds, 0.1, 192);
    addCoded("song.avi", OSTRELLE_FILM "-i in.wav -c:v mpeg4 -c:a libmp3lame song.avi", kSeconds, 0.11, 128);
    addRow("film.webm", OSTRELLE_FILM "-i in.wav -c:v libvpx -c:a libopus film.webm", 48000, 2, kNone, kSeconds, 0.05,
           kBySize);
    addRow("silent.mov", OSTRELLE_FILM "-c:v mpeg4 silent.mov", kNone, kNone, kNone, kSeconds, 0.01, kBySize);
#undef OSTRELLE_FILM
#undef OSTRELLE_FFMPEG
}

void AudioFactsTest::factsAreThoseOfTheStream()
{
    QFETCH(QString, name);
    QFETCH(QString, command);
    QFETCH(double, rate);
    QFETCH(int, channels);
    QFETCH(int, depth);
    QFETCH(double, seconds);
    QFETCH(double, tolerance);
    QFETCH(int, kbps);
    runTool(m_home->path(), command);
    const auto result = audioInfoOf(*m_client, path(name));
    QVERIFY(std::holds_alternative<AudioInfo>(result));
    const auto &info = std::get<AudioInfo>(result);
    const qint64 size = QFileInfo(path(name)).size();
    QCOMPARE(info.sampleRate.value_or(kNone), rate);
    QCOMPARE(info.channels.value_or(kNone), channels);
    QCOMPARE(info.bitDepth.value_or(kNone), depth);
    QVERIFY2(std::abs(info.duration - seconds) <= tolerance, qPrintable(QString::number(info.duration, 'f', 6)));
    QCOMPARE(info.byteSize, size);
    // Of MP3 with variable rates the headers tell the mean without themselves; other encoders hit theirs nearly.
    const bool isMeanOfFrames = kbps == kBySize && name.endsWith(QLatin1String(".mp3"));
    const int slack = depth != kNone ? 0 : isMeanOfFrames ? 5 : 1;
    const int expected = kbps != kBySize ? kbps : int(std::lround(double(size) * 8 / info.duration / 1000));
    QVERIFY2(std::abs(info.bitrateKbps.value_or(kNone) - expected) <= slack,
             qPrintable(QStringLiteral("%1 for %2").arg(info.bitrateKbps.value_or(kNone)).arg(expected)));
    QVERIFY(!info.bpm);
}

void AudioFactsTest::piecesOfStreamsAreKnown()
{
    const QByteArray song = made(QStringLiteral("lame --quiet -t -b 128 in.wav song.mp3"), QStringLiteral("song.mp3"));
    const auto mp3 = std::get<AudioInfo>(factsOf(QStringLiteral("piece"), song.mid(1000)));
    QVERIFY(std::abs(mp3.duration - kSeconds) < 0.1);
    // A recording of what has been on the air for an hour.
    const auto made = [this](const char *name, const char *codec) {
        runTool(m_home->path(), QStringLiteral("ffmpeg -v error -y -i in.wav -c:a %1 -output_ts_offset 3600 %2")
                                    .arg(QLatin1String(codec), QLatin1String(name)));
        return std::get<AudioInfo>(audioInfoOf(*m_client, path(QLatin1String(name))));
    };
    QVERIFY(std::abs(made("air.ogg", "libvorbis").duration - kSeconds) < 0.1);
    QVERIFY(std::abs(made("air.opus", "libopus").duration - kSeconds) < 0.1);
}

/// Joined by hand, or cut: the header in the first frame still counts the frames that there once were.
void AudioFactsTest::staleCountsOfFramesAreNotBelieved()
{
    const QByteArray song = made(QStringLiteral("lame --quiet -V 4 noise.wav stale.mp3"), QStringLiteral("stale.mp3"));
    const QByteArray bare = made(QStringLiteral("lame --quiet -t -V 4 noise.wav bare.mp3"), QStringLiteral("bare.mp3"));
    for (const auto &[bytes, seconds] :
         {std::pair(song + bare + bare, 3 * kSeconds), std::pair(song.left(song.size() / 2), kSeconds / 2)}) {
        const auto result = factsOf(QStringLiteral("changed.mp3"), bytes);
        QVERIFY(std::abs(std::get<AudioInfo>(result).duration - seconds) < 0.2);
    }
}

void AudioFactsTest::tagsBehindTheSoundDoNotCount_data()
{
    QTest::addColumn<QByteArray>("tags");
    const QByteArray id3v1 = "TAG" + QByteArray(125, ' ');
    const QByteArray item = littleEndian(60'000, 4) + QByteArray(4, '\0') + "Cover" + '\0' + QByteArray(60'000, 'x');
    const QByteArray apeFields = littleEndian(2000, 4) + littleEndian(quint64(item.size()) + 32, 4) +
                                 littleEndian(1, 4) + littleEndian(0x80000000, 4) + QByteArray(8, '\0');
    const QByteArray ape = "APETAGEX" + apeFields + item + "APETAGEX" + apeFields;
    const QByteArray words = "LYRICSBEGIN" + QByteArray(50'000, 'x');
    QTest::newRow("id3v1") << id3v1;
    QTest::newRow("ape") << ape;
    QTest::newRow("ape and id3v1") << ape + id3v1;
    QTest::newRow("lyrics") << words + QByteArray::number(words.size()).rightJustified(6, '0') + "LYRICS200" + id3v1;
}

void AudioFactsTest::tagsBehindTheSoundDoNotCount()
{
    QFETCH(QByteArray, tags);
    const QByteArray song =
        made(QStringLiteral("lame --quiet -t -b 128 in.wav plain.mp3"), QStringLiteral("plain.mp3"));
    const auto plain = std::get<AudioInfo>(audioInfoOf(*m_client, path(QStringLiteral("plain.mp3"))));
    const auto tagged = std::get<AudioInfo>(factsOf(QStringLiteral("tagged.mp3"), song + tags));
    QCOMPARE(tagged.duration, plain.duration);
    QCOMPARE(tagged.bitrateKbps, std::optional(128));
    QCOMPARE(tagged.byteSize, plain.byteSize + tags.size());
}

void AudioFactsTest::contentCountsAndNotTheName()
{
    const auto wav =
        std::get<AudioInfo>(factsOf(QStringLiteral("named.mp3"), contentOf(path(QStringLiteral("in.wav")))));
    QCOMPARE(wav.bitDepth, std::optional(16));
    QCOMPARE(wav.format, QStringLiteral("MP3"));
    const QByteArray flac = made(QStringLiteral("flac -s -f in.wav -o f.flac"), QStringLiteral("f.flac"));
    const auto tagged = std::get<AudioInfo>(factsOf(QStringLiteral("tagged"), id3Tag(3, {}) + flac));
    QCOMPARE(tagged.duration, kSeconds);
    QCOMPARE(tagged.format, QString());
}

void AudioFactsTest::notesHaveNoSamples()
{
    const QByteArray samples = QByteArray(31 * 30, '\0');
    const QByteArray module =
        QByteArray(20, '\0') + samples + "\1\x7f" + QByteArray(128, '\0') + "M.K." + QByteArray(1024, '\0');
    const auto info = std::get<AudioInfo>(factsOf(QStringLiteral("notes.mod"), module));
    QVERIFY(info.duration > 0);
    QCOMPARE(info.bitDepth, std::nullopt);
    QCOMPARE(info.bitrateKbps, std::optional(int(std::lround(double(module.size()) * 8 / info.duration / 1000))));
}

void AudioFactsTest::whatIsNoSoundIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("This is a song about a text that bears another name.\n").repeated(100);
    QTest::newRow("text of 16 bits") << "\xff\xfe" + QByteArray("a\0b\0c\0\n\0", 8).repeated(200);
    QTest::newRow("picture") << encoded(turnable(64, 64), "png");
    QTest::newRow("tag and text") << id3Tag(4, {}) + QByteArray("words ").repeated(100);
    QTest::newRow("wav without a format") << QByteArray("RIFF\x40\0\0\0WAVEdata\x40\0\0\0", 20) + QByteArray(64, 'x');
    QTest::newRow("mp4 without a movie") << mp4Box("ftyp", "M4A \0\0\0\0") + mp4Box("mdat", QByteArray(500, 'x'));
    QTest::newRow("ogg of nothing") << "OggS" + QByteArray(24, '\0') + "\1vorbis" + QByteArray(60, '\0');
    const QByteArray frame = QByteArray("\xff\xfb\x90\x40", 4) + QByteArray(413, '\0');
    QTest::newRow("frames in something else") << QByteArray(100, 'x') + frame.repeated(10) + QByteArray(50'000, 'x');
    QTest::newRow("zeros") << QByteArray(100'000, '\0');
}

void AudioFactsTest::whatIsNoSoundIsRefused()
{
    QFETCH(QByteArray, bytes);
    for (const char *ending : {"mp3", "wav", "m4a"}) {
        const auto result = factsOf(QStringLiteral("song.") + QLatin1String(ending), bytes);
        QVERIFY(std::holds_alternative<MediaFailure>(result));
        const auto failure = std::get<MediaFailure>(result);
        QVERIFY(failure == MediaFailure::Unsupported || failure == MediaFailure::Broken);
    }
}

void AudioFactsTest::cutFilesHaveTheFactsOfWhatIsLeft()
{
    const struct
    {
        const char *name;
        const char *command;
    } files[]{{"cut.wav", "cp noise.wav cut.wav"},
              {"cut.aiff", "sox noise.wav cut.aiff"},
              {"cut", "lame --quiet -t -b 128 noise.wav cut"},
              {"cut.ogg", "oggenc -Q noise.wav -o cut.ogg"},
              {"cut.aac", "ffmpeg -v error -y -i noise.wav cut.aac"}};
    for (const auto &file : files) {
        const QString name = QLatin1String(file.name);
        const QByteArray bytes = made(QLatin1String(file.command), name);
        const auto whole = std::get<AudioInfo>(audioInfoOf(*m_client, path(name)));
        const auto half =
            std::get<AudioInfo>(factsOf(QLatin1String("half-") + name, bytes.left(bytes.size() * 6 / 10)));
        QVERIFY2(std::abs(half.duration - whole.duration * 0.6) < 0.5, file.command);
        QCOMPARE(half.sampleRate, whole.sampleRate);
        QCOMPARE(half.bitDepth, whole.bitDepth);
    }
}

void AudioFactsTest::everyDamageIsSurvived_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("wav") << "cp in.wav d";
    QTest::newRow("aiff") << "sox in.wav d.aiff; mv d.aiff d";
    QTest::newRow("caf") << "ffmpeg -v error -y -i in.wav -f caf d";
    QTest::newRow("wma") << "ffmpeg -v error -y -i in.wav -c:a wmav2 -f asf d";
    QTest::newRow("mka") << "ffmpeg -v error -y -i in.wav -c:a libvorbis -f matroska d";
}

/// Cut at many places of their headers, and with bytes turned over: any answer is right, but no helper may be lost,
/// which would warn.
void AudioFactsTest::everyDamageIsSurvived()
{
    QFETCH(QString, command);
    const QByteArray bytes = made(command, QStringLiteral("d"));
    int answers = 0;
    std::vector<MediaRequest> requests;
    const auto ask = [&](const QByteArray &spoilt) {
        const QString name = path(QStringLiteral("damaged%1").arg(requests.size()));
        writeFile(name, spoilt);
        requests.push_back(m_client->audioInfo(name, [&answers](const auto &) { ++answers; }));
    };
    constexpr int kCuts = 20;
    constexpr qsizetype kHeaders = 1200;
    quint32 random = 7;
    for (int cut = 0; cut < kCuts; ++cut) {
        ask(bytes.left(kHeaders * cut / kCuts));
        QByteArray turned = bytes;
        for (int i = 0; i < 3; ++i) {
            random = random * 1664525 + 1013904223;
            turned[qsizetype(random >> 8) % kHeaders] = char(random >> 24);
        }
        ask(turned);
    }
    QVERIFY(QTest::qWaitFor([&] { return answers == 2 * kCuts; }, 60'000));
}

OSTRELLE_TEST(AudioFactsTest)
#include "AudioFactsTest.moc"
