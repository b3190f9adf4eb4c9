#include "tempo/TempoEstimate.h"

#include "support/Pattern.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>

using namespace ostrelle;

/// Rhythms through the whole pipeline.
class TempoOfPatternsTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void clicks_data();
    void clicks();
    void steadyBeats_data();
    void steadyBeats();
    void syncopationIsHeardAtARelatedTempo();
    void driftIsHeardAsItsMiddle();
    void loudnessDoesNotMatter();
    void withoutAnySoundThereIsNone();
    void needsFourSecondsAndABit();
};

namespace {

constexpr double kSeconds = 45;
constexpr double kNone = -1;
/// A lag is a whole number of values of the envelope, 26 to 86 of them; between two of them it is guessed.
constexpr double kTolerance = 0.01;

bool isNear(double heard, double expected)
{
    return std::abs(heard / expected - 1) < kTolerance;
}

Pattern clickTrack(double bpm, double seconds = kSeconds)
{
    Pattern pattern(bpm, seconds);
    for (int beat = 0; beat < pattern.beats(); ++beat)
        pattern.addClick(beat);
    return pattern;
}

} // namespace

void TempoOfPatternsTest::clicks_data()
{
    QTest::addColumn<double>("bpm");
    QTest::addColumn<double>("expected");
    for (int bpm = 61; bpm <= 77; bpm += 4)
        QTest::addRow("%d", bpm) << double(bpm) << 2.0 * bpm;
    for (int bpm = 81; bpm <= 165; bpm += 4)
        QTest::addRow("%d", bpm) << double(bpm) << double(bpm);
    for (int bpm = 181; bpm <= 197; bpm += 16)
        QTest::addRow("%d", bpm) << double(bpm) << bpm / 2.0;
}

void TempoOfPatternsTest::clicks()
{
    QFETCH(double, bpm);
    QFETCH(double, expected);
    const double heard = estimateTempo(clickTrack(bpm).samples()).value_or(kNone);
    QVERIFY2(isNear(heard, expected), qPrintable(QString::number(heard)));
}

void TempoOfPatternsTest::steadyBeats_data()
{
    QTest::addColumn<double>("offBeat");
    QTest::addColumn<float>("hiss");
    QTest::newRow("straight") << 0.5 << 0.0F;
    QTest::newRow("swung") << 2.0 / 3 << 0.0F;
    QTest::newRow("swung, under noise") << 2.0 / 3 << 0.1F;
}

void TempoOfPatternsTest::steadyBeats()
{
    QFETCH(double, offBeat);
    QFETCH(float, hiss);
    for (double bpm = 88; bpm <= 160; bpm += 4) {
        Pattern pattern(bpm, kSeconds);
        for (int beat = 0; beat < pattern.beats(); ++beat) {
            pattern.addKick(beat);
            pattern.addHat(beat);
            pattern.addHat(beat + offBeat);
            if (beat % 2 == 1)
                pattern.addSnare(beat, 0.7F);
        }
        pattern.addNoise(hiss);
        const double heard = estimateTempo(pattern.samples()).value_or(kNone);
        QVERIFY2(isNear(heard, bpm), qPrintable(QStringLiteral("%1 as %2").arg(bpm).arg(heard)));
    }
}

void TempoOfPatternsTest::syncopationIsHeardAtARelatedTempo()
{
    for (double bpm = 84; bpm <= 172; bpm += 8) {
        Pattern pattern(bpm, kSeconds);
        for (int bar = 0; bar < pattern.beats() / 4; ++bar) {
            for (const double at : {0.0, 1.5, 2.5, 3.25})
                pattern.addKick(4 * bar + at);
            for (const double at : {1.0, 3.0})
                pattern.addSnare(4 * bar + at);
            for (int eighth = 0; eighth < 8; ++eighth)
                pattern.addHat(4 * bar + eighth / 2.0);
        }
        const double heard = estimateTempo(pattern.samples()).value_or(kNone);
        constexpr std::array kRelated{1.0 / 2, 2.0 / 3, 3.0 / 4, 1.0, 4.0 / 3};
        const bool isRelated =
            std::any_of(kRelated.begin(), kRelated.end(), [&](double related) { return isNear(heard, bpm * related); });
        QVERIFY2(isRelated, qPrintable(QStringLiteral("%1 as %2").arg(bpm).arg(heard)));
    }
}

void TempoOfPatternsTest::driftIsHeardAsItsMiddle()
{
    Pattern pattern(119, kSeconds);
    pattern.driftTo(121);
    for (int beat = 0; beat < pattern.beats(); ++beat)
        beat % 2 == 0 ? pattern.addKick(beat) : pattern.addSnare(beat);
    const double heard = estimateTempo(pattern.samples()).value_or(kNone);
    QVERIFY2(isNear(heard, 120), qPrintable(QString::number(heard)));
}

void TempoOfPatternsTest::loudnessDoesNotMatter()
{
    std::vector<float> quiet = clickTrack(127.6).samples();
    for (float &sample : quiet)
        sample *= 1.0F / 1024;
    QCOMPARE(estimateTempo(quiet), estimateTempo(clickTrack(127.6).samples()));
}

void TempoOfPatternsTest::withoutAnySoundThereIsNone()
{
    constexpr std::size_t kCount = 45 * kTempoSampleRate;
    QVERIFY(!estimateTempo(std::vector<float>(kCount)));
    QVERIFY(!estimateTempo(std::vector<float>(kCount, 0.5F)));
}

void TempoOfPatternsTest::needsFourSecondsAndABit()
{
    // 353 values of an envelope.
    constexpr std::size_t kFewest = 512 + 352 * 128;
    const std::vector<float> samples = clickTrack(150, 5).samples();
    const std::span<const float> all(samples);
    QVERIFY(!estimateTempo({}));
    QVERIFY(!estimateTempo(all.first(44'100)));
    QVERIFY(!estimateTempo(all.first(kFewest - 1)));
    QVERIFY(estimateTempo(all.first(kFewest)));
}

OSTRELLE_TEST(TempoOfPatternsTest)
#include "TempoOfPatternsTest.moc"
