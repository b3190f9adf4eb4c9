#include "SoundTools.h"

#include "media_client/AudioInfo.h"
#include "media_helper/AacConfiguration.h"
#include "media_helper/AudioCommand.h"
#include "media_helper/SourceViews.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>

#include <array>
#include <cstring>
#include <memory>
#include <vector>

using namespace ostrelle;

/// How much of a file is read for its facts, and what becomes of headers that lie.
class HeaderReadingTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void largeFilesAreReadAsLittleAsSmallOnes_data();
    void largeFilesAreReadAsLittleAsSmallOnes();
    void variableRatesOfLargeFilesAreSampled();
    void budgetEndsWhatHasNoEnd();
    void liesAreBounded_data();
    void liesAreBounded();
    void lengthIsThatOfWhatIsHeard_data();
    void lengthIsThatOfWhatIsHeard();
    void everyDamageIsAnswered_data();
    void everyDamageIsAnswered();
    void configurationTellsWhatIsHeard_data();
    void configurationTellsWhatIsHeard();

private:
    QByteArray made(const char *command);

    std::unique_ptr<TemporaryHome> m_home;
};

namespace {

constexpr quint64 kGigabyte = 1'000'000'000;
constexpr std::uint64_t kBudget = 4U << 20U;

/// Bytes of a file that is larger than memory: a begin, a middle that repeats, an end. Counts what is read of it.
class LargeSource final : public ByteSource
{
public:
    LargeSource(QByteArray begin, QByteArray middle, quint64 middleSize, QByteArray end = {})
        : m_begin(std::move(begin))
        , m_middle(std::move(middle))
        , m_middleSize(middleSize)
        , m_end(std::move(end))
    {
    }

    std::uint64_t size() const override { return quint64(m_begin.size()) + m_middleSize + quint64(m_end.size()); }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override
    {
        std::size_t count = 0;
        for (; count < buffer.size() && offset + count < size(); ++count)
            buffer[count] = static_cast<std::uint8_t>(at(offset + count));
        m_read += count;
        return count;
    }
    std::uint64_t bytesRead() const { return m_read; }

private:
    char at(quint64 offset) const
    {
        if (offset < quint64(m_begin.size()))
            return m_begin[qsizetype(offset)];
        offset -= quint64(m_begin.size());
        if (offset < m_middleSize)
            return m_middle[qsizetype(offset % quint64(m_middle.size()))];
        return m_end[qsizetype(offset - m_middleSize)];
    }

    QByteArray m_begin;
    QByteArray m_middle;
    quint64 m_middleSize;
    QByteArray m_end;
    std::uint64_t m_read = 0;
};

std::optional<AudioInfo> factsOf(ByteSource &source, FileKind kind, ReadAudioFacts *read)
{
    const std::array rows{AudioFactsRow{kind, read}};
    const CommandAnswer answer = answerAudioInfo(source, {rows, UnknownKinds::Refuse, kBudget});
    return audioInfoFromJson(
        QByteArray(reinterpret_cast<const char *>(answer.payload.data()), qsizetype(answer.payload.size())),
        QStringLiteral("/song"));
}

std::optional<AudioInfo> factsOf(const QByteArray &bytes, FileKind kind, ReadAudioFacts *read)
{
    MemorySource source({reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())});
    return factsOf(source, kind, read);
}

QByteArray replaced(QByteArray bytes, qsizetype at, const QByteArray &by)
{
    return bytes.replace(at, by.size(), by);
}

using Reader = std::pair<FileKind, ReadAudioFacts *>;

} // namespace

Q_DECLARE_METATYPE(Reader)
Q_DECLARE_METATYPE(std::shared_ptr<LargeSource>)

void HeaderReadingTest::initTestCase()
{
    m_home = std::make_unique<TemporaryHome>();
    runTool(m_home->path(), QStringLiteral("sox -R -n -r 44100 -c 2 -b 16 in.wav synth 2.5 pluck A3 pluck E4 gain -6"));
}

void HeaderReadingTest::cleanupTestCase()
{
    m_home.reset();
}

QByteArray HeaderReadingTest::made(const char *command)
{
    runTool(m_home->path(), QLatin1String(command));
    QFile file(m_home->path(QStringLiteral("out")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void HeaderReadingTest::largeFilesAreReadAsLittleAsSmallOnes_data()
{
    QTest::addColumn<std::shared_ptr<LargeSource>>("source");
    QTest::addColumn<Reader>("reader");
    QTest::addColumn<double>("seconds");
    const auto row = [](const char *name, LargeSource source, FileKind kind, ReadAudioFacts *read, double seconds) {
        QTest::newRow(name) << std::make_shared<LargeSource>(std::move(source)) << Reader(kind, read) << seconds;
    };
    constexpr quint64 kPcm = 2 * kGigabyte;
    constexpr double kPcmSeconds = double(kPcm) / (4 * 44100);

    const QByteArray wav = made("cp in.wav out").left(44);
    row("wav", {replaced(wav, 40, littleEndian(kPcm, 4)), "x", kPcm}, FileKind::Wav, readPcmFacts, kPcmSeconds);
    QByteArray aiff = made("sox in.wav -t aiff out");
    const qsizetype frames = aiff.indexOf("COMM") + 10;
    const qsizetype sound = aiff.indexOf("SSND") + 4;
    aiff = replaced(replaced(aiff, frames, bigEndian(kPcm / 4, 4)), sound, bigEndian(kPcm + 8, 4)).left(sound + 12);
    row("aiff", {aiff, "x", kPcm}, FileKind::Aiff, readPcmFacts, kPcmSeconds);
    QByteArray caf = made("ffmpeg -v error -y -i in.wav -f caf out");
    const qsizetype data = caf.indexOf("data") + 4;
    caf = replaced(caf, data, bigEndian(kPcm + 4, 8)).left(data + 12);
    row("caf", {caf, "x", kPcm}, FileKind::Caf, readPcmFacts, kPcmSeconds);

    const QByteArray frame = QByteArray("\xff\xfb\xa0\x44", 4) + QByteArray(518, '\0'); // 160 kbit/s at 44100
    row("mp3 without a count", {{}, frame + frame, 522 * 4'000'000ULL}, FileKind::Mp3, readMpegFacts,
        522 * 4'000'000.0 * 8 / 160'000);
    const QByteArray tag = "ID3" + QByteArray("\3\0\0\x77\x7f\x7f\x7f", 7) + QByteArray(1, '\0');
    const quint64 tagSize = 10 + ((0x77ULL << 21U) | 0x1fffffU);
    row("mp3 behind a tag of 250 MB", {tag, QByteArray(1, '\0'), tagSize - quint64(tag.size()), (frame).repeated(1000)},
        FileKind::Mp3, readMpegFacts, 1000 * 1152.0 / 44100);
    QByteArray adts("\xff\xf1\x50\x80\x20\x1f\xfc", 7); // 256 bytes, 44100, stereo
    adts += QByteArray(249, 'x');
    row("adts", {{}, adts, 256 * 8'000'000ULL}, FileKind::Aac, readAdtsFacts, 8'000'000.0 * 1024 / 44100);

    const QByteArray picture = QByteArray("\x06\xff\xff\xff", 4);
    const QByteArray flac = made("flac -s -f in.wav -o out").left(42);
    row("flac with a large picture", {flac + picture, "x", 2 * kGigabyte}, FileKind::Flac, readFlacFacts, 2.5);
    const QByteArray piped = made("ffmpeg -v error -y -i in.wav -f flac - > out");
    row("flac without a count", {piped.left(8192), "x", 2 * kGigabyte, piped.mid(8192)}, FileKind::Flac, readFlacFacts,
        2.5);
    const QByteArray ogg = made("oggenc -Q in.wav -o out");
    const qsizetype page = ogg.indexOf("OggS", 8192);
    row("ogg", {ogg.left(page), "x", 2 * kGigabyte, ogg.mid(page)}, FileKind::OggAudio, readOggFacts, 2.5);
    const QByteArray mp4 = made("ffmpeg -v error -y -i in.wav -c:a aac -f ipod out");
    const qsizetype type = mp4.indexOf("ftyp") - 4;
    const qsizetype rest = type + mp4[type + 3];
    const QByteArray free = bigEndian(2 * kGigabyte + 8, 4) + "free";
    row("mp4", {mp4.left(rest) + free, "x", 2 * kGigabyte, mp4.mid(rest)}, FileKind::Mp4Audio, readMp4Facts, 2.5);
}

void HeaderReadingTest::largeFilesAreReadAsLittleAsSmallOnes()
{
    QFETCH(std::shared_ptr<LargeSource>, source);
    QFETCH(Reader, reader);
    QFETCH(double, seconds);
    const auto info = factsOf(*source, reader.first, reader.second);
    QVERIFY(info.has_value());
    QVERIFY2(std::abs(info->duration - seconds) < seconds * 1e-6 + 1e-4, qPrintable(QString::number(info->duration)));
    QVERIFY2(source->bytesRead() <= kBudget, qPrintable(QString::number(source->bytesRead())));
}

/// Quiet and loud parts: the beginning says little about the whole.
void HeaderReadingTest::variableRatesOfLargeFilesAreSampled()
{
    const QByteArray quiet = QByteArray("\xff\xfb\x10\x44", 4) + QByteArray(100, '\0'); // 32 kbit/s
    const QByteArray loud = QByteArray("\xff\xfb\xe0\x44", 4) + QByteArray(1040, '\0'); // 320 kbit/s
    const QByteArray part = quiet.repeated(20'000) + loud.repeated(6'000);
    LargeSource source({}, part, quint64(part.size()) * 20);
    const auto info = factsOf(source, FileKind::Mp3, readMpegFacts);
    const double seconds = 20 * 26'000 * 1152.0 / 44100;
    QVERIFY(std::abs(info->duration - seconds) < seconds * 0.1);
    QVERIFY(source.bytesRead() <= kBudget);
}

void HeaderReadingTest::budgetEndsWhatHasNoEnd()
{
    LargeSource source("begin", "x", kGigabyte);
    MeteredSource metered(source, 100'000);
    std::vector<std::uint8_t> buffer(10'000);
    int reads = 0;
    for (std::uint64_t at = 0; metered.readAt(at, buffer) > 0; at += buffer.size())
        ++reads;
    QCOMPARE(reads, 10);
    QCOMPARE(metered.readAt(0, std::span(buffer).first(1)), std::size_t(0));

    // Boxes of eight bytes each, for a gigabyte.
    LargeSource boxes(mp4Box("ftyp", "M4A "), mp4Box("free", {}), kGigabyte);
    QVERIFY(!factsOf(boxes, FileKind::Mp4Audio, readMp4Facts));
    QVERIFY(boxes.bytesRead() <= kBudget);
    LargeSource chunks("RIFF\xff\xff\xff\xffWAVE", littleEndian(0x20, 8), kGigabyte);
    (void)factsOf(chunks, FileKind::Wav, readPcmFacts);
    QVERIFY(chunks.bytesRead() <= kBudget);
}

void HeaderReadingTest::liesAreBounded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reader>("reader");
    const auto row = [](const char *name, const QByteArray &bytes, FileKind kind, ReadAudioFacts *read) {
        QTest::newRow(name) << bytes << Reader(kind, read);
    };
    const QByteArray wav = made("cp in.wav out");
    row("wav of 2^32 bytes", replaced(wav, 40, QByteArray(4, '\xff')), FileKind::Wav, readPcmFacts);
    row("wav of 65535 channels", replaced(wav, 22, QByteArray(2, '\xff')), FileKind::Wav, readPcmFacts);
    row("wav of one frame a second", replaced(wav, 24, littleEndian(1, 4)), FileKind::Wav, readPcmFacts);
    const QByteArray aiff = made("sox in.wav -t aiff out");
    row("aiff of 2^32 frames", replaced(aiff, aiff.indexOf("COMM") + 10, QByteArray(4, '\xff')), FileKind::Aiff,
        readPcmFacts);
    const QByteArray caf = made("ffmpeg -v error -y -i in.wav -f caf out");
    row("caf of 2^63 bytes", replaced(caf, caf.indexOf("data") + 4, "\x7f" + QByteArray(7, '\xff')), FileKind::Caf,
        readPcmFacts);
    const QByteArray flac = made("flac -s -f in.wav -o out");
    row("flac of 2^36 samples at one hertz", replaced(flac, 18, QByteArray("\0\0\x12\xff\xff\xff\xff\xff", 8)),
        FileKind::Flac, readFlacFacts);
    const QByteArray mp3 = made("lame --quiet -V 2 in.wav out");
    const qsizetype counts = mp3.indexOf("Xing") + 8;
    row("mp3 of 2^32 frames", replaced(mp3, counts, QByteArray(4, '\xff')), FileKind::Mp3, readMpegFacts);
    row("mp3 of 2^32 frames and bytes", replaced(mp3, counts, QByteArray(8, '\xff')), FileKind::Mp3, readMpegFacts);
    const QByteArray ogg = made("opusenc --quiet in.wav out");
    row("ogg of 2^62 samples", replaced(ogg, ogg.lastIndexOf("OggS") + 6, QByteArray(7, '\xff') + '\x3f'),
        FileKind::OggAudio, readOggFacts);
    // The pages behind the two of the headers count from nearly nothing to nearly everything.
    QByteArray leap = ogg;
    qsizetype page = leap.indexOf("OggS", leap.indexOf("OggS", 4) + 4);
    for (quint64 position = 1ULL << 32U; page > 0; position = 0x60ULL << 56U, page = leap.indexOf("OggS", page + 4))
        leap = replaced(leap, page + 6, littleEndian(position, 8));
    row("ogg that leaps", leap, FileKind::OggAudio, readOggFacts);
    const QByteArray mp4 = made("ffmpeg -v error -y -i in.wav -c:a aac -f ipod out");
    QByteArray years = replaced(mp4, mp4.indexOf("mdhd") + 16, bigEndian(1, 4) + QByteArray(3, '\xff') + '\xfe');
    years.replace("edts", "free");
    row("mp4 of a century", years, FileKind::Mp4Audio, readMp4Facts);
    QByteArray edits = replaced(mp4, mp4.indexOf("elst") + 8, QByteArray(8, '\xff'));
    row("mp4 of 2^32 edits", edits, FileKind::Mp4Audio, readMp4Facts);
}

/// Either there is no answer, or one that the file can hold.
void HeaderReadingTest::liesAreBounded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reader, reader);
    const auto info = factsOf(bytes, reader.first, reader.second);
    if (!info)
        return;
    QVERIFY2(info->duration <= double(bytes.size()), qPrintable(QString::number(info->duration)));
    QVERIFY(info->channels.value_or(0) <= 1024);
}

void HeaderReadingTest::lengthIsThatOfWhatIsHeard_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reader>("reader");
    QTest::addColumn<double>("samples");
    const auto row = [](const char *name, const QByteArray &bytes, FileKind kind, ReadAudioFacts *read,
                        double samples) { QTest::newRow(name) << bytes << Reader(kind, read) << samples; };
    const QByteArray frame = QByteArray("\xff\xfb\x90\x44", 4) + QByteArray(413, '\0'); // 128 kbit/s
    const QByteArray vbri = "VBRI" + QByteArray(6, '\0') + bigEndian(417 * 61, 4) + bigEndian(60, 4);
    row("counted by vbri", replaced(frame, 36, vbri) + frame.repeated(60), FileKind::Mp3, readMpegFacts, 60 * 1152);

    const QByteArray mp4 = made("ffmpeg -v error -y -i in.wav -c:a aac -f ipod out");
    const qsizetype movie = mp4.lastIndexOf("moov") - 4;
    const auto withComment = [&](QByteArray boxes, const QByteArray &comment) {
        boxes.replace("edts", "free").replace("udta", "free");
        const QByteArray item = mp4Box("mean", QByteArray(4, '\0') + "com.apple.iTunes") +
                                mp4Box("name", QByteArray(4, '\0') + "iTunSMPB") +
                                mp4Box("data", bigEndian(1, 4) + QByteArray(4, '\0') + comment);
        const QByteArray meta = QByteArray(4, '\0') + mp4Box("ilst", mp4Box("----", item));
        return mp4.left(movie) + mp4Box("moov", boxes + mp4Box("udta", mp4Box("meta", meta)));
    };
    const QByteArray inside = mp4.mid(movie + 8);
    constexpr double kPriming = 1024;
    constexpr double kHeard = 110'250;
    row("edited", mp4, FileKind::Mp4Audio, readMp4Facts, kHeard);
    row("commented", withComment(inside, " 00000000 00000400 00000256 000000000001AEAA 00000000"), FileKind::Mp4Audio,
        readMp4Facts, kHeard);
    row("commented with a lie", withComment(inside, " 00000000 00000400 00000256 FFFFFFFFFFFFFFFF 00000000"),
        FileKind::Mp4Audio, readMp4Facts, kHeard + kPriming);
    row("not edited", withComment(inside, "words"), FileKind::Mp4Audio, readMp4Facts, kHeard + kPriming);
}

void HeaderReadingTest::lengthIsThatOfWhatIsHeard()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reader, reader);
    QFETCH(double, samples);
    QCOMPARE(factsOf(bytes, reader.first, reader.second).value_or(AudioInfo()).duration, samples / 44100);
}

void HeaderReadingTest::everyDamageIsAnswered_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reader>("reader");
    const auto row = [this](const char *name, const char *command, FileKind kind, ReadAudioFacts *read) {
        QTest::newRow(name) << made(command) << Reader(kind, read);
    };
    row("mp3", "lame --quiet -V 2 --id3v2-only --tt name --tv TBPM=124 in.wav out", FileKind::Mp3, readMpegFacts);
    row("aac", "ffmpeg -v error -y -i in.wav -f adts out", FileKind::Aac, readAdtsFacts);
    row("m4a", "ffmpeg -v error -y -i in.wav -c:a aac -movflags +faststart -f ipod out", FileKind::Mp4Audio,
        readMp4Facts);
    row("alac", "ffmpeg -v error -y -i in.wav -c:a alac -movflags +faststart -f ipod out", FileKind::Mp4Audio,
        readMp4Facts);
    row("flac", "ffmpeg -v error -y -i in.wav -f flac - > out", FileKind::Flac, readFlacFacts);
    row("vorbis", "oggenc -Q in.wav -o out", FileKind::OggAudio, readOggFacts);
    row("opus", "opusenc --quiet in.wav out", FileKind::OggAudio, readOggFacts);
}

/// Any answer is right, but what is read stays within bounds.
void HeaderReadingTest::everyDamageIsAnswered()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reader, reader);
    QVERIFY(factsOf(bytes, reader.first, reader.second));
    constexpr int kCopies = 1500;
    constexpr qsizetype kHeaders = 1200;
    quint32 random = 7;
    const auto next = [&random](qsizetype end) {
        random = random * 1664525 + 1013904223;
        return qsizetype(random >> 8) % end;
    };
    for (int copy = 0; copy < kCopies; ++copy) {
        QByteArray spoilt = bytes;
        for (int turned = 0; turned <= copy % 4; ++turned)
            spoilt[next(copy % 3 == 0 ? spoilt.size() : kHeaders)] = char(next(256));
        if (copy % 5 == 0)
            spoilt.truncate(next(copy % 2 == 0 ? spoilt.size() : kHeaders));
        LargeSource source(spoilt, "x", 0);
        (void)factsOf(source, reader.first, reader.second);
        QVERIFY(source.bytesRead() <= kBudget);
    }
}

void HeaderReadingTest::configurationTellsWhatIsHeard_data()
{
    QTest::addColumn<QByteArray>("configuration");
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channels");
    const auto row = [](const char *name, const char *hex, double rate, int channels) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << rate << channels;
    };
    row("low complexity", "1210", 44100, 2);
    row("a rate without an index", "1780560c10", 44056, 2);
    row("band replication", "2b920800", 44100, 2);
    row("parametric stereo", "eb8a0800", 44100, 2);
    row("replication that old decoders overlook", "131056e598", 48000, 2);
    row("stereo that old decoders overlook", "130856e59d4880", 48000, 2);
    row("5.1", "11b0", 48000, 6);
    row("7.1", "11b8", 48000, 8);
    row("channels described one by one", "1180", 0, 0);
    row("another codec", "f94640", 0, 0);
    row("nothing", "", 0, 0);
}

void HeaderReadingTest::configurationTellsWhatIsHeard()
{
    QFETCH(QByteArray, configuration);
    QFETCH(double, rate);
    QFETCH(int, channels);
    const auto heard = readAacConfiguration(
        {reinterpret_cast<const std::uint8_t *>(configuration.constData()), std::size_t(configuration.size())});
    QCOMPARE(heard ? double(heard->sampleRate) : 0, rate);
    QCOMPARE(heard ? int(heard->channels) : 0, channels);
}

OSTRELLE_TEST(HeaderReadingTest)
#include "HeaderReadingTest.moc"
