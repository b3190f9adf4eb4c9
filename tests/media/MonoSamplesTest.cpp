#include "media_helper/MonoSamples.h"

#include "MediaFixture.h"
#include "SoundFiles.h"
#include "foundation/FileDescriptor.h"
#include "media_helper/AudioStream.h"
#include "media_helper/ByteSource.h"
#include "support/Pattern.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "tempo/TempoEstimate.h"

#include <QFile>
#include <QTest>

#include <cmath>
#include <memory>

#include <fcntl.h>

extern "C" {
#include <libavutil/cpu.h>
#include <libavutil/log.h>
}

using namespace ostrelle;

/// What is taken of a sound, sample by sample.
class MonoSamplesTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void takeTheMiddleOfTheSound_data();
    void takeTheMiddleOfTheSound();
    void areAtTheSamePlaceInEveryKind_data();
    void areAtTheSamePlaceInEveryKind();
    void countWhatTheHeadOnlyGuesses_data();
    void countWhatTheHeadOnlyGuesses();
    void areTheAverageOfTheChannels();
    void leaveOutWhatIsNoNumber();
    void vectorCodeMovesNoTempo();

private:
    using Samples = std::vector<float>;
    Samples of(OpenAudio *open, const QString &path);
    QString converted(const QString &name, const QStringList &options);

    std::unique_ptr<TemporaryHome> m_home;
    QString m_song;
};

namespace {

struct Reader
{
    OpenAudio *open = nullptr;
};

constexpr double kSeconds = 64;
constexpr std::size_t kCount = 45 * kTempoSampleRate;
constexpr int kMostDelay = 700;

/// A sound of any form from a function.
class Tone final : public AudioStream
{
public:
    using Value = float (*)(std::int64_t frame, int channel);

    Tone(const AudioFormat &format, Value value)
        : m_value(value)
    {
        m_format = format;
    }

    std::size_t read(std::span<float> samples) override
    {
        const auto channels = static_cast<std::size_t>(m_format.channels);
        std::size_t count = 0;
        for (; count < samples.size() / channels && m_at < m_format.frames; ++count, ++m_at) {
            for (std::size_t channel = 0; channel < channels; ++channel)
                samples[count * channels + channel] = m_value(m_at, static_cast<int>(channel));
        }
        return count;
    }

    bool seek(std::int64_t frame) override
    {
        m_start = m_at = frame;
        return true;
    }

    std::int64_t start() const { return m_start; }
    std::int64_t end() const { return m_at; }

private:
    Value m_value;
    std::int64_t m_start = -1;
    std::int64_t m_at = 0;
};

/// By how many samples `a` comes later than `b`, looked for up to `most`; where they are alike at none, more than that.
int delayOf(const std::vector<float> &a, const std::vector<float> &b, int most)
{
    constexpr std::size_t kFrom = 4000;
    constexpr std::size_t kLength = 40'000;
    const auto likeness = [&](int delay) {
        double product = 0;
        double energyOfA = 0;
        double energyOfB = 0;
        for (std::size_t i = kFrom; i < kFrom + kLength; ++i) {
            const double x = double(a[i + std::size_t(delay + most)]);
            const double y = double(b[i + std::size_t(most)]);
            product += x * y;
            energyOfA += x * x;
            energyOfB += y * y;
        }
        return product / std::sqrt(energyOfA * energyOfB);
    };
    int best = most + 1;
    double bestLikeness = 0.8;
    for (int delay = -most; delay <= most; ++delay) {
        if (likeness(delay) > bestLikeness) {
            bestLikeness = likeness(delay);
            best = delay;
        }
    }
    return best;
}

} // namespace

void MonoSamplesTest::initTestCase()
{
    av_log_set_level(AV_LOG_QUIET);
    // A beat, and noise that never repeats.
    Pattern pattern(120, kSeconds);
    for (int beat = 0; beat < pattern.beats(); ++beat)
        pattern.addClick(beat, 0.5F);
    pattern.addNoise(0.2F);
    m_home = std::make_unique<TemporaryHome>();
    m_song = m_home->path(QStringLiteral("song.wav"));
    writeFile(m_home->path(QStringLiteral("low.wav")), wavOf(pattern.samples()));
    convertSound(m_home->path(QStringLiteral("low.wav")), m_song,
                 {QStringLiteral("-ar"), QStringLiteral("44100"), QStringLiteral("-ac"), QStringLiteral("2")});
}

void MonoSamplesTest::init()
{
    TestBase::init();
    av_force_cpu_flags(-1);
}

MonoSamplesTest::Samples MonoSamplesTest::of(OpenAudio *open, const QString &path)
{
    const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    FileSource source(file.get());
    const std::unique_ptr<AudioStream> stream = open(source);
    return stream ? monoSamples(*stream).value_or(Samples()) : Samples();
}

QString MonoSamplesTest::converted(const QString &name, const QStringList &options)
{
    QString path = m_home->path(name);
    if (!QFile::exists(path))
        convertSound(m_song, path, options);
    return path;
}

void MonoSamplesTest::takeTheMiddleOfTheSound_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<qint64>("frames");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    const auto row = [](const char *name, int rate, qint64 frames, qint64 start, qint64 end) {
        QTest::newRow(name) << rate << frames << start << end;
    };
    row("ten minutes", 1000, 600'000, 30'000, 75'000);
    row("two minutes", 48'000, 5'760'000, 1'440'000, 3'600'000);
    row("one minute", 44'100, 2'646'000, 661'500, 2'646'000);
    row("twenty seconds", 44'100, 882'000, 220'500, 882'000);
    row("at the target's own rate", kTempoSampleRate, 110'250, 27'562, 110'249);
    row("one frame", 8000, 1, -1, 0);
    row("nothing", 8000, 0, -1, 0);
    row("not known how long", 8000, -1, -1, 0);
}

void MonoSamplesTest::takeTheMiddleOfTheSound()
{
    QFETCH(int, rate);
    QFETCH(qint64, frames);
    QFETCH(qint64, start);
    QFETCH(qint64, end);
    Tone tone({.sampleRate = rate, .channels = 1, .frames = frames}, [](std::int64_t, int) { return 0.5F; });
    const auto samples = monoSamples(tone);
    QCOMPARE(tone.start(), start);
    QCOMPARE(tone.end(), end);
    QCOMPARE(samples.has_value(), start >= 0);
    if (samples)
        QVERIFY(std::abs(double(samples->size()) - double(end - start) * kTempoSampleRate / rate) <= 1);
}

void MonoSamplesTest::areAtTheSamePlaceInEveryKind_data()
{
    QTest::addColumn<Reader>("reader");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("tolerance");
    const auto row = [](OpenAudio *open, const char *name, const char *options = "", int tolerance = 0) {
        QTest::newRow(name) << Reader{open} << QString::fromLatin1(name)
                            << QString::fromLatin1(options).split(u' ', Qt::SkipEmptyParts) << tolerance;
    };
    row(openSampledAudio, "s.aiff");
    row(openSampledAudio, "s.caf");
    row(openSampledAudio, "s.flac");
    row(openSampledAudio, "float.wav", "-c:a pcm_f32le");
    row(openSampledAudio, "vorbis.ogg", "-c:a libvorbis");
    row(openSampledAudio, "s.opus");
    row(openMixedMp3, "constant.mp3", "-b:a 128k");
    row(openMixedMp3, "variable.mp3", "-q:a 4");
    row(openMediaAudio, "aac.m4a");
    row(openMediaAudio, "alac.m4a", "-c:a alac");
    row(openMediaAudio, "aac.mp4", "-f lavfi -i testsrc=s=64x64:r=5 -shortest -c:v mpeg4");
    // Their times are of milliseconds, or do not tell what the encoder put before the first sample, or add up falsely.
    row(openMediaAudio, "flac.mkv", "-c:a flac", 6);
    row(openMediaAudio, "s.aac", "", 1024 / 4 + 6);
    row(openMediaAudio, "s.ac3", "", kMostDelay);
    row(openMediaAudio, "s.wma", "", kMostDelay);
}

void MonoSamplesTest::areAtTheSamePlaceInEveryKind()
{
    QFETCH(Reader, reader);
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    QFETCH(int, tolerance);
    const Samples expected = of(openSampledAudio, m_song);
    QCOMPARE(expected.size(), kCount);
    const Samples heard = of(reader.open, converted(name, options));
    QVERIFY2(std::abs(int(heard.size()) - int(kCount)) <= 1, qPrintable(QString::number(heard.size())));
    const int delay = delayOf(heard, expected, kMostDelay);
    QVERIFY2(std::abs(delay) <= tolerance, qPrintable(QString::number(delay)));
}

void MonoSamplesTest::countWhatTheHeadOnlyGuesses_data()
{
    QTest::addColumn<Reader>("reader");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<double>("kept");
    const QStringList noHead{QStringLiteral("-write_xing"), QStringLiteral("0"), QStringLiteral("-q:a"),
                             QStringLiteral("4")};
    QTest::newRow("half of a song whose head counts its frames")
        << Reader{openMp3} << QStringLiteral("s.mp3") << QStringList() << 0.5;
    QTest::newRow("no head at all") << Reader{openMp3} << QStringLiteral("bare.mp3") << noHead << 1.0;
    QTest::newRow("no head, by ffmpeg") << Reader{openMediaAudio} << QStringLiteral("bare.mp3") << noHead << 1.0;
    QTest::newRow("bare frames") << Reader{openMediaAudio} << QStringLiteral("s.aac") << QStringList() << 1.0;
    QTest::newRow("half of them") << Reader{openMediaAudio} << QStringLiteral("s.aac") << QStringList() << 0.5;
}

void MonoSamplesTest::countWhatTheHeadOnlyGuesses()
{
    QFETCH(Reader, reader);
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    QFETCH(double, kept);
    QFile whole(converted(name, options));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QByteArray bytes = whole.readAll();
    bytes.truncate(qsizetype(double(bytes.size()) * kept));
    MemorySource source({reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())});
    const std::unique_ptr<AudioStream> stream = reader.open(source);
    QVERIFY(stream);

    std::int64_t frames = 0;
    std::vector<float> block(std::size_t(4096 * stream->format().channels));
    while (const std::size_t count = stream->read(block))
        frames += std::int64_t(count);
    QVERIFY(std::abs(double(frames) / (kSeconds * kept * 44'100) - 1) < 0.05);
    QCOMPARE(stream->countFrames(frames * 2), frames);
    QVERIFY(stream->countFrames(frames / 2) >= frames / 2);
    QVERIFY(stream->seek(frames - 10));
    QCOMPARE(stream->read(block), std::size_t(10));
}

void MonoSamplesTest::areTheAverageOfTheChannels()
{
    const auto value = [](std::int64_t, int channel) { return channel == 0 ? 0.9F : 0.0F; };
    Tone tone({.sampleRate = 44'100, .channels = 3, .frames = 441'000}, value);
    const auto samples = monoSamples(tone);
    QVERIFY(samples);
    QVERIFY(std::abs((*samples)[samples->size() / 2] - 0.3F) < 1e-3F);
    // The decoder's own average is the same.
    const QString path = converted(QStringLiteral("constant.mp3"), {QStringLiteral("-b:a"), QStringLiteral("128k")});
    const Samples mixed = of(openMixedMp3, path);
    const Samples stored = of(openMp3, path);
    QCOMPARE(mixed.size(), stored.size());
    for (std::size_t i = 0; i < mixed.size(); ++i)
        QVERIFY(std::abs(mixed[i] - stored[i]) < 1e-4F);
}

void MonoSamplesTest::leaveOutWhatIsNoNumber()
{
    const auto value = [](std::int64_t frame, int) { return frame % 1000 == 0 ? std::nanf("") : 0.5F; };
    Tone tone({.sampleRate = 44'100, .channels = 1, .frames = 441'000}, value);
    const auto samples = monoSamples(tone);
    QVERIFY(samples);
    for (const float sample : *samples)
        QVERIFY(std::isfinite(sample));
}

void MonoSamplesTest::vectorCodeMovesNoTempo()
{
    const auto tempoOf = [this](OpenAudio *open, const QString &name, const QStringList &options) {
        return estimateTempo(of(open, converted(name, options)));
    };
    const auto tempi = [&tempoOf] {
        return std::vector{
            tempoOf(openSampledAudio, QStringLiteral("song.wav"), {}),
            tempoOf(openMediaAudio, QStringLiteral("aac.m4a"), {}),
            tempoOf(openMediaAudio, QStringLiteral("alac.m4a"), {QStringLiteral("-c:a"), QStringLiteral("alac")})};
    };
    const auto quick = tempi();
    av_force_cpu_flags(0);
    m_home->set("SOXR_USE_SIMD", QStringLiteral("0"));
    QCOMPARE(tempi(), quick);
    QVERIFY(quick.front());
}

OSTRELLE_TEST(MonoSamplesTest)
#include "MonoSamplesTest.moc"
