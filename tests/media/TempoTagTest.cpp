#include "SoundTools.h"

#include "media_client/AudioInfo.h"
#include "media_helper/AudioCommand.h"
#include "media_helper/ByteSource.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <array>
#include <bit>

using namespace ostrelle;

/// The tempo that tags state, and which of them count.
class TempoTagTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void textIsOneNumber_data();
    void textIsOneNumber();
    void framesAreFoundInEveryTag_data();
    void framesAreFoundInEveryTag();
    void itemsOfMp4StateNumbersOrText_data();
    void itemsOfMp4StateNumbersOrText();
    void otherTagsDoNotCount_data();
    void otherTagsDoNotCount();
};

namespace {

constexpr double kNone = 0;

/// Sound is not what this is about.
std::optional<AudioFacts> someFacts(ByteSource &)
{
    AudioFacts facts;
    facts.sampleRate = 44100;
    return facts;
}

constexpr std::array kRows{
    AudioFactsRow{FileKind::Mp3, someFacts},
    AudioFactsRow{FileKind::Flac, someFacts},
    AudioFactsRow{FileKind::OggAudio, someFacts},
    AudioFactsRow{FileKind::Wav, someFacts, readWavTempo},
    AudioFactsRow{FileKind::Aiff, someFacts, readAiffTempo},
    AudioFactsRow{FileKind::Mp4Audio, someFacts, readMp4Tempo},
};

double tempoOf(const QByteArray &bytes)
{
    MemorySource source({reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())});
    const CommandAnswer answer = answerAudioInfo(source, {kRows, UnknownKinds::Refuse, 4U << 20U});
    const QByteArray json(reinterpret_cast<const char *>(answer.payload.data()), qsizetype(answer.payload.size()));
    const auto info = audioInfoFromJson(json, QStringLiteral("/song"));
    return info ? info->bpm.value_or(kNone) : -1;
}

QByteArray songWith(const QByteArray &tag)
{
    return tag + QByteArray(500, '\0');
}

QByteArray tempoFrame(const QByteArray &text)
{
    return id3Frame(3, "TBPM", text);
}

QByteArray wavWith(const QByteArray &chunks)
{
    const QByteArray body = "WAVE" + chunks;
    return "RIFF" + littleEndian(quint64(body.size()), 4) + body;
}

QByteArray chunk(const QByteArray &name, const QByteArray &content)
{
    return name + littleEndian(quint64(content.size()), 4) + content + QByteArray(content.size() % 2, '\0');
}

QByteArray value(quint64 type, const QByteArray &content)
{
    return mp4Box("data", bigEndian(type, 4) + QByteArray(4, '\0') + content);
}

/// A file with these items of tags and nothing else.
QByteArray mp4With(const QByteArray &items)
{
    const QByteArray meta = QByteArray(4, '\0') + mp4Box("hdlr", QByteArray(25, '\0')) + mp4Box("ilst", items);
    return mp4Box("ftyp", QByteArray("M4A \0\0\0\0", 8)) + mp4Box("mdat", QByteArray(100, 'x')) +
           mp4Box("moov", mp4Box("udta", mp4Box("meta", meta)));
}

} // namespace

void TempoTagTest::textIsOneNumber_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("tempo");
    const auto row = [](const char *text, double tempo) { QTest::newRow(text) << QByteArray(text) << tempo; };
    row("124", 124);
    row(" 124 ", 124);
    row("\t127.6\n", 127.6);
    row("+1.2e2", 120);
    row("400", 400);
    row("400.5", kNone);
    row("0", kNone);
    row("-90", kNone);
    row("+-90", kNone);
    row("124bpm", kNone);
    row("124 BPM", kNone);
    row("120,5", kNone);
    row("0x7c", kNone);
    row("nan", kNone);
    row("inf", kNone);
    row(" ", kNone);
}

void TempoTagTest::textIsOneNumber()
{
    QFETCH(QByteArray, text);
    QFETCH(double, tempo);
    QCOMPARE(tempoOf(songWith(id3Tag(3, tempoFrame(text)))), tempo);
}

void TempoTagTest::framesAreFoundInEveryTag_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<double>("tempo");
    const auto row = [](const char *name, const QByteArray &bytes, double tempo) {
        QTest::newRow(name) << bytes << tempo;
    };
    const QByteArray cover = id3Frame(3, "APIC", QByteArray(3'000'000, '\xff'));
    const QByteArray wide("\1\xff\xfe"
                          "1\0002\0004\0",
                          9);
    row("version 2.2", songWith(id3Tag(2, id3Frame(2, "TT2", "name") + id3Frame(2, "TBP", "124"))), 124);
    row("version 2.3", songWith(id3Tag(3, id3Frame(3, "TIT2", "name") + tempoFrame("124"))), 124);
    row("version 2.4", songWith(id3Tag(4, id3Frame(4, "TIT2", QByteArray(300, 'x')) + id3Frame(4, "TBPM", "124"))),
        124);
    row("plain sizes in version 2.4",
        songWith(id3Tag(4, id3Frame(3, "TIT2", QByteArray(300, 'x')) + tempoFrame("124"))), 124);
    row("two values in one frame",
        songWith(id3Tag(4, id3Frame(4, "TBPM",
                                    QByteArray("x\0"
                                               "98",
                                               4)))),
        98);
    row("sixteen bits", songWith(id3Tag(3, "TBPM" + bigEndian(9, 4) + QByteArray(2, '\0') + wide)), 124);
    row("behind a large cover", songWith(id3Tag(3, cover + tempoFrame("124"))), 124);
    row("extended header", songWith(id3Tag(3, bigEndian(6, 4) + QByteArray(6, '\0') + tempoFrame("124"), 0x40)), 124);
    QByteArray unsynchronised = id3Frame(3, "PRIV", QByteArray(30, '\xff')) + tempoFrame("124");
    unsynchronised.replace("\xff", QByteArray("\xff\0", 2));
    row("unsynchronised", songWith(id3Tag(3, unsynchronised, 0x80)), 124);
    const auto flagged = [](int flags, const QByteArray &content) {
        return "TBPM" + bigEndian(quint64(content.size()), 4) + '\0' + char(flags) + content;
    };
    row("frame with its length", songWith(id3Tag(4, flagged(1, bigEndian(4, 4) + QByteArray(1, '\0') + "124"))), 124);
    row("frame of a group",
        songWith(id3Tag(4, flagged(0x40, QByteArray("g\0"
                                                    "124",
                                                    5)))),
        124);
    row("frame of a group in version 2.3",
        songWith(id3Tag(3, flagged(0x20, QByteArray("g\0"
                                                    "124",
                                                    5)))),
        124);
    row("unsynchronised frame",
        songWith(id3Tag(4, flagged(2, QByteArray("\1\xff\0\xfe"
                                                 "9\0"
                                                 "8\0",
                                                 8)))),
        98);
    row("packed frame does not count",
        songWith(id3Tag(3, flagged(0x80, QByteArray("\0"
                                                    "124",
                                                    4)))),
        kNone);
    row("second of two tags", songWith(id3Tag(3, tempoFrame("x")) + id3Tag(4, id3Frame(4, "TBPM", "98"))), 98);
    row("first does not count", songWith(id3Tag(3, tempoFrame("0") + tempoFrame("401") + tempoFrame("98"))), 98);
    row("first counts", songWith(id3Tag(3, tempoFrame("97") + tempoFrame("98"))), 97);
    row("before flac", id3Tag(3, tempoFrame("124")) + "fLaC" + QByteArray(100, '\0'), 124);
    row("in wav", wavWith(chunk("data", "odd") + chunk("id3 ", id3Tag(3, tempoFrame("124")))), 124);
    const QByteArray sizes = littleEndian(0, 8) + littleEndian(4, 8) + QByteArray(12, '\0');
    row("in rf64",
        wavWith(chunk("ds64", sizes) + "data" + QByteArray(4, '\xff') + "even" +
                chunk("ID3 ", id3Tag(3, tempoFrame("124")))),
        124);
    const QByteArray tag = id3Tag(2, id3Frame(2, "TBP", "124"));
    const QByteArray form = "AIFF"
                            "SSND" +
                            bigEndian(2, 4) +
                            "xx"
                            "ID3 " +
                            bigEndian(quint64(tag.size()), 4) + tag;
    row("in aiff", "FORM" + bigEndian(quint64(form.size()), 4) + form, 124);
}

void TempoTagTest::framesAreFoundInEveryTag()
{
    QFETCH(QByteArray, bytes);
    QFETCH(double, tempo);
    QCOMPARE(tempoOf(bytes), tempo);
}

void TempoTagTest::itemsOfMp4StateNumbersOrText_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<double>("tempo");
    const auto row = [](const char *name, const QByteArray &values, double tempo) {
        QTest::newRow(name) << mp4Box("tmpo", values) << tempo;
    };
    row("two bytes", value(21, bigEndian(124, 2)), 124);
    row("one byte without a sign", value(22, "\xc8"), 200);
    row("one byte with a sign", value(21, "\xc8"), kNone);
    row("four bytes", value(21, bigEndian(124, 4)), 124);
    row("type not told", value(0, bigEndian(124, 2)), 124);
    row("fraction", value(24, bigEndian(std::bit_cast<quint64>(127.6), 8)), 127.6);
    row("text", value(1, " 127.6 "), 127.6);
    row("text of 16 bits", value(2, QByteArray("\0001\0002\0004", 6)), 124);
    row("text with a unit", value(1, "124bpm"), kNone);
    row("too fast", value(21, bigEndian(401, 2)), kNone);
    row("no bytes", value(21, {}), kNone);
    row("nine bytes", value(21, QByteArray(9, '\1')), kNone);
    row("first of two does not count", value(21, bigEndian(0, 2)) + value(21, bigEndian(98, 2)), 98);
    QTest::newRow("second item") << mp4Box("covr", value(13, QByteArray(90'000, 'x'))) + mp4Box("tmpo", value(1, "x")) +
                                        mp4Box("tmpo", value(21, bigEndian(98, 2)))
                                 << 98.0;
}

void TempoTagTest::itemsOfMp4StateNumbersOrText()
{
    QFETCH(QByteArray, items);
    QFETCH(double, tempo);
    QCOMPARE(tempoOf(mp4With(items)), tempo);
}

void TempoTagTest::otherTagsDoNotCount_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray comment("TBPM=124\0BPM=124", 16);
    QTest::newRow("free text of id3") << songWith(id3Tag(3, id3Frame(3, "TXXX",
                                                                     QByteArray("BPM\0"
                                                                                "124",
                                                                                7))));
    QTest::newRow("free item of mp4") << mp4With(
        mp4Box("----", mp4Box("mean", "    com.apple.iTunes") + mp4Box("name", "    BPM") + value(1, "124")));
    QTest::newRow("comments of flac") << "fLaC" + QByteArray("\x84\0\0\x20", 4) + comment + QByteArray(100, '\0');
    QTest::newRow("beyond the tag's end")
        << QByteArray("ID3\3\0\0\0\0\0\x05", 10) + tempoFrame("124") + QByteArray(500, '\0');
    QTest::newRow("longer than the tag") << songWith(
        id3Tag(3, "TBPM" + bigEndian(900'000, 4) + QByteArray(3, '\0') + "124"));
}

void TempoTagTest::otherTagsDoNotCount()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(tempoOf(bytes), kNone);
}

OSTRELLE_TEST(TempoTagTest)
#include "TempoTagTest.moc"
