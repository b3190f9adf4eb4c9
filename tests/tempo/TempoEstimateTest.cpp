#include "tempo/TempoEstimate.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace ostrelle;

namespace {

/// A value of `period` every `period` values, so that their mean is 1 and the sums of whole periods are exact.
std::vector<float> train(std::size_t period, std::size_t count)
{
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; i += period)
        values[i] = static_cast<float>(period);
    return values;
}

/// 5,760 values, which are whole periods of 16, 30, 32, 40, 48, 60 and 64.
constexpr std::size_t kLength = 5760;

constexpr double kNone = -1;

} // namespace

/// The stages after the envelopes, by figures that were worked out by hand.
class TempoEstimateTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void refinesAPeak_data();
    void refinesAPeak();
    void foldsAndRounds_data();
    void foldsAndRounds();
    void asksTheLowBandForRelatedLags_data();
    void asksTheLowBandForRelatedLags();
    void weighsTheMultiplesOfALag_data();
    void weighsTheMultiplesOfALag();
    void takesTheFasterOfEqualTempi();
    void scoresNoLagBelowTheShortest();
    void needsLongEnvelopes();
    void needsAPeakThatStandsOut();
};

void TempoEstimateTest::refinesAPeak_data()
{
    QTest::addColumn<std::vector<double>>("scores");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("expected");
    const std::vector<double> parabola{0, 9 - 1.3 * 1.3, 9 - 0.3 * 0.3, 9 - 0.7 * 0.7, 0};
    QTest::newRow("between two") << parabola << 2 << 2.3;
    QTest::newRow("first") << parabola << 0 << 0.0;
    QTest::newRow("last") << parabola << 4 << 4.0;
    QTest::newRow("straight line") << std::vector<double>{1, 2, 3} << 1 << 1.0;
    QTest::newRow("one step away") << std::vector<double>{0, 3, 4} << 1 << 2.0;
    QTest::newRow("further away") << std::vector<double>{0, 1, 1.9} << 1 << 1.0;
}

void TempoEstimateTest::refinesAPeak()
{
    QFETCH(std::vector<double>, scores);
    QFETCH(int, index);
    QFETCH(double, expected);
    QVERIFY(std::abs(refine(scores, std::size_t(index)) - expected) < 1e-12);
}

void TempoEstimateTest::foldsAndRounds_data()
{
    QTest::addColumn<double>("bpm");
    QTest::addColumn<double>("expected");
    const auto row = [](const char *name, double bpm, double expected) { QTest::newRow(name) << bpm << expected; };
    row("doubled", 70, 140);
    row("left", 150, 150);
    row("halved", 190, 95);
    row("doubled into the range", 45, 90);
    row("doubled twice", 38, 152);
    row("doubled three times and no more", 9, 72);
    row("too slow for three", 7.4, kNone);
    row("not doubled", 78, 78);
    row("just doubled", 77.7, 155.4);
    row("not halved", 180, 180);
    row("just halved", 181, 90.5);
    row("halved six times and no more", 12'000, 187.5);
    row("too fast for six", 12'864, kNone);
    row("near a whole number", 127.8, 128);
    row("not near enough", 127.6, 127.6);
    row("a quarter away", 127.75, 127.8);
    row("halfway between", 100.5, 100.5);
    row("two decimals", 100.333, 100.3);
    row("standing still", 0, kNone);
    row("endless", std::numeric_limits<double>::infinity(), kNone);
    row("no number", std::numeric_limits<double>::quiet_NaN(), kNone);
}

void TempoEstimateTest::foldsAndRounds()
{
    QFETCH(double, bpm);
    QFETCH(double, expected);
    QCOMPARE(foldedTempo(bpm).value_or(kNone), expected);
}

void TempoEstimateTest::asksTheLowBandForRelatedLags_data()
{
    QTest::addColumn<int>("fullPeriod");
    QTest::addColumn<int>("lowPeriod");
    QTest::addColumn<double>("expected");
    const auto row = [](const char *name, int full, int low, double expected) {
        QTest::newRow(name) << full << low << expected;
    };
    // 5167.96875 values a minute, divided by the lag.
    row("two thirds, before four thirds which score the same", 48, 32, 161.5);
    row("three quarters, before three halves which score the same", 40, 30, 172.3);
    row("the same lag", 48, 48, 107.7);
    row("the same lag by its bonus, where others score alike", 48, 16, 107.7);
    row("four thirds", 48, 64, 80.7);
    row("three halves", 40, 60, 86);
}

void TempoEstimateTest::asksTheLowBandForRelatedLags()
{
    QFETCH(int, fullPeriod);
    QFETCH(int, lowPeriod);
    QFETCH(double, expected);
    const OnsetEnvelopes envelopes{train(std::size_t(fullPeriod), kLength), train(std::size_t(lowPeriod), kLength)};
    QCOMPARE(tempoFrom(envelopes).value_or(kNone), expected);
}

void TempoEstimateTest::weighsTheMultiplesOfALag_data()
{
    QTest::addColumn<int>("period");
    QTest::addColumn<int>("otherPeriod");
    QTest::addColumn<float>("otherLevel");
    QTest::addColumn<double>("expected");
    const auto row = [](const char *name, int period, int otherPeriod, float otherLevel, double expected) {
        QTest::newRow(name) << period << otherPeriod << otherLevel << expected;
    };
    // 108 is three times a lag of 36, 96 twice and 192 four times one of 48: where one outweighs the other, by other
    // means than this code, tells the weights from any that are a sixth larger or smaller.
    row("third against second and fourth, just above", 108, 96, 0.7F, 143.6);
    row("just below", 108, 96, 0.8F, 107.7);
    row("fourth against third, just below", 192, 108, 1.25F, 107.7);
    row("third against fourth, just above", 108, 192, 0.7F, 143.6);
}

void TempoEstimateTest::weighsTheMultiplesOfALag()
{
    QFETCH(int, period);
    QFETCH(int, otherPeriod);
    QFETCH(float, otherLevel);
    QFETCH(double, expected);
    std::vector<float> low = train(std::size_t(period), kLength);
    const std::vector<float> other = train(std::size_t(otherPeriod), kLength);
    for (std::size_t i = 0; i < kLength; ++i)
        low[i] += otherLevel * other[i];
    QCOMPARE(tempoFrom({train(48, kLength), low}).value_or(kNone), expected);
}

void TempoEstimateTest::takesTheFasterOfEqualTempi()
{
    // A lag of 64 scores exactly what one of 32 does. A low band without any change is not asked.
    QCOMPARE(tempoFrom({train(32, kLength), std::vector<float>(kLength)}).value_or(kNone), 161.5);
}

void TempoEstimateTest::scoresNoLagBelowTheShortest()
{
    // A peak at 26 between a score of 0 and one of 4.4 lies at 26.05; between two of 4.4 it would be 99.4 a minute.
    constexpr std::size_t kPeriod = 26;
    std::vector<float> pairs(220 * kPeriod);
    for (std::size_t i = 0; i < pairs.size(); i += kPeriod)
        pairs[i] = pairs[i + 1] = kPeriod / 2.0F;
    QCOMPARE(tempoFrom({pairs, std::vector<float>(pairs.size())}).value_or(kNone), 99.0);
}

void TempoEstimateTest::needsLongEnvelopes()
{
    for (const std::size_t count : {0U, 7U, 53U, 54U, 352U})
        QVERIFY(!tempoFrom({train(32, count), train(32, count)}));
    QVERIFY(tempoFrom({train(32, 353), train(32, 353)}));
}

void TempoEstimateTest::needsAPeakThatStandsOut()
{
    // All lags alike, above and below none.
    std::vector<float> single(kLength);
    single[100] = 1;
    QVERIFY(!tempoFrom({single, single}));
    std::vector<float> slope(kLength);
    for (std::size_t i = 0; i < kLength; ++i)
        slope[i] = static_cast<float>(i);
    QVERIFY(!tempoFrom({slope, slope}));
    std::vector<float> broken = train(32, kLength);
    broken[7] = std::numeric_limits<float>::quiet_NaN();
    QVERIFY(!tempoFrom({broken, broken}));
}

OSTRELLE_TEST(TempoEstimateTest)
#include "TempoEstimateTest.moc"
