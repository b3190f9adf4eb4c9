#include "media_client/AudioInfo.h"
#include "media_client/ByteCount.h"
#include "media_client/ImageInfo.h"
#include "media_helper/FactsJson.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <limits>

using namespace ostrelle;

/// What the program makes of the helpers' answers about facts, and how it writes them.
class FactAnswersTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void writesAmounts_data();
    void writesAmounts();
    void writesSizes_data();
    void writesSizes();
    void refusesFiguresThatCannotBe_data();
    void refusesFiguresThatCannotBe();
    void namesFilesItself();
    void answersAreJsonWhateverAFileSays();
};

void FactAnswersTest::writesAmounts_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("expected");
    const auto duration = [](double seconds) {
        AudioInfo info;
        info.duration = seconds;
        return info.durationString();
    };
    const auto rate = [](double hertz) {
        AudioInfo info;
        info.sampleRate = hertz;
        return info.sampleRateString().value_or(QStringLiteral("none"));
    };
    const auto channels = [](int count) {
        AudioInfo info;
        info.channels = count;
        return info.channelsString().value_or(QStringLiteral("none"));
    };
    const auto row = [](const char *name, const QString &written, const char *expected) {
        QTest::newRow(name) << written << QString::fromUtf8(expected);
    };
    row("half a second up", duration(59.5), "01:00");
    row("below an hour", duration(3599.4), "59:59");
    row("rounded to an hour", duration(3599.5), "1:00:00");
    row("hours", duration(3725), "1:02:05");
    row("no duration", duration(0), "—");
    row("endless", duration(std::numeric_limits<double>::infinity()), "—");
    row("whole kilohertz", rate(96000), "96 kHz");
    row("one decimal", rate(22050), "22.1 kHz");
    row("a decimal that is zero", rate(11025), "11.0 kHz");
    row("no rate", rate(0), "none");
    row("mono", channels(1), "Mono");
    row("surround", channels(6), "6 channels");
    row("no channels", channels(0), "none");
    row("whole tempo", AudioInfo::bpmString(128), "128 BPM");
    row("broken tempo", AudioInfo::bpmString(127.6), "127.6 BPM");
}

void FactAnswersTest::writesAmounts()
{
    QFETCH(QString, written);
    QFETCH(QString, expected);
    QCOMPARE(written, expected);
}

void FactAnswersTest::writesSizes_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << qint64(0) << "Zero KB";
    QTest::newRow("one byte") << qint64(1) << "1 KB";
    QTest::newRow("kilobytes") << qint64(999'499) << "999 KB";
    QTest::newRow("rounds to a megabyte") << qint64(999'500) << "1 MB";
    QTest::newRow("megabytes") << qint64(12'340'000) << "12.3 MB";
    QTest::newRow("rounds to a gigabyte") << qint64(999'950'000) << "1 GB";
    QTest::newRow("gigabytes") << qint64(1'254'000'000) << "1.25 GB";
}

void FactAnswersTest::writesSizes()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, expected);
    QCOMPARE(byteCountString(bytes), expected);
}

void FactAnswersTest::refusesFiguresThatCannotBe_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("isAudio");
    QTest::addColumn<bool>("isImage");
    const auto row = [](const char *name, const QByteArray &json, bool isAudio, bool isImage) {
        QTest::newRow(name) << json << isAudio << isImage;
    };
    row("sound", R"({"duration":2.5})", true, false);
    row("a stream without a duration", R"({"sampleRate":44100})", true, false);
    row("negative duration", R"({"duration":-1})", false, false);
    row("ten thousand years", R"({"duration":3.2e11})", false, false);
    row("picture", R"({"pixelWidth":1,"pixelHeight":1})", false, true);
    row("half a pixel", R"({"pixelWidth":1.5,"pixelHeight":1})", false, false);
    row("no height", R"({"pixelWidth":1,"pixelHeight":0})", false, false);
    row("more than an integer", R"({"pixelWidth":1,"pixelHeight":4294967296})", false, false);
    row("a text", R"({"pixelWidth":"1","pixelHeight":"1","duration":"2"})", false, false);
    row("an array", "[1]", false, false);
    row("cut off", R"({"duration":2.5)", false, false);
    row("too long", QByteArray(R"({"duration":2.5,"x":")") + QByteArray(20'000, 'x') + "\"}", false, false);
}

void FactAnswersTest::refusesFiguresThatCannotBe()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, isAudio);
    QFETCH(bool, isImage);
    QCOMPARE(audioInfoFromJson(json, QStringLiteral("/a.wav")).has_value(), isAudio);
    QCOMPARE(imageInfoFromJson(json, QStringLiteral("/a.png")).has_value(), isImage);
}

void FactAnswersTest::namesFilesItself()
{
    const auto audio =
        audioInfoFromJson(R"({"duration":1,"bpm":400.5,"name":"other"})", QStringLiteral("/m/A song.Mp3"));
    QVERIFY(audio.has_value());
    QCOMPARE(audio->name, QStringLiteral("A song.Mp3"));
    QCOMPARE(audio->format, QStringLiteral("MP3"));
    QVERIFY(!audio->bpm);

    const auto image =
        imageInfoFromJson(R"({"pixelWidth":2,"pixelHeight":3,"colorSpace":"two\nlines"})", QStringLiteral("/m/photo"));
    QVERIFY(image.has_value());
    QCOMPARE(image->format, QString());
    QCOMPARE(image->colorSpace, QStringLiteral("two lines"));
    QVERIFY(!image->hasAlpha);
}

void FactAnswersTest::answersAreJsonWhateverAFileSays()
{
    const std::vector<std::uint8_t> json = factsJson({{"pixelWidth", std::int64_t(2)},
                                                      {"pixelHeight", std::int64_t(3)},
                                                      {"dpi", std::numeric_limits<double>::infinity()},
                                                      {"hasAlpha", true},
                                                      {"colorSpace", "two\xff \"words\""}});
    const auto info = imageInfoFromJson(QByteArray(reinterpret_cast<const char *>(json.data()), qsizetype(json.size())),
                                        QStringLiteral("/m/photo"));
    QVERIFY(info.has_value());
    QCOMPARE(info->pixelHeight, 3);
    QCOMPARE(info->colorSpace, QStringLiteral("two\uFFFD \"words\""));
    QVERIFY(info->hasAlpha);
}

OSTRELLE_TEST(FactAnswersTest)
#include "FactAnswersTest.moc"
