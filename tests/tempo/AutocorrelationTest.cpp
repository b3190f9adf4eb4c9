#include "tempo/Autocorrelation.h"

#include "support/Pattern.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace ostrelle;

class AutocorrelationTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void needsValuesBeyondTheLagsAndADifference();
    void ofAlternation();
    void isThatOfPlainLoops_data();
    void isThatOfPlainLoops();
    void takesTheMeanOfASumInSinglePrecision();
};

namespace {

std::vector<double> byPlainLoops(const std::vector<float> &values, std::size_t maxLag, double mean)
{
    std::vector<double> result(maxLag + 1);
    for (std::size_t lag = 1; lag <= maxLag; ++lag) {
        double sum = 0;
        for (std::size_t i = 0; i + lag < values.size(); ++i)
            sum += (double(values[i]) - mean) * (double(values[i + lag]) - mean);
        result[lag] = sum / double(values.size() - lag);
    }
    return result;
}

} // namespace

void AutocorrelationTest::needsValuesBeyondTheLagsAndADifference()
{
    const std::vector<float> values = noise(20);
    QVERIFY(!autocorrelation(values, 12));
    QVERIFY(autocorrelation(values, 11));
    QVERIFY(!autocorrelation({}, 0));
    QVERIFY(!autocorrelation(std::vector<float>(20, 0.25F), 4));
}

void AutocorrelationTest::ofAlternation()
{
    // About their mean of 1 they are -1, 1, -1 ...
    const std::vector<float> values{0, 2, 0, 2, 0, 2, 0, 2, 0, 2, 0, 2};
    QCOMPARE(autocorrelation(values, 3), (std::vector<double>{0, -1, 1, -1}));
}

void AutocorrelationTest::isThatOfPlainLoops_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("maxLag");
    QTest::newRow("fewer lags than are summed together") << 20 << 5;
    QTest::newRow("as many") << 20 << 8;
    QTest::newRow("a whole excerpt") << 3872 << 344;
    QTest::newRow("up to the limit") << 353 << 344;
}

void AutocorrelationTest::isThatOfPlainLoops()
{
    QFETCH(int, count);
    QFETCH(int, maxLag);
    const std::vector<float> values = noise(std::size_t(count));
    float sum = 0;
    for (const float value : values)
        sum += value;
    QCOMPARE(autocorrelation(values, std::size_t(maxLag)),
             byPlainLoops(values, std::size_t(maxLag), double(sum) / count));
}

void AutocorrelationTest::takesTheMeanOfASumInSinglePrecision()
{
    // Nothing so small as 1 can be added to 2^24 in single precision.
    std::vector<float> values(32, 1);
    values[0] = 16'777'216;
    QCOMPARE(autocorrelation(values, 3), byPlainLoops(values, 3, 524'288));
}

OSTRELLE_TEST(AutocorrelationTest)
#include "AutocorrelationTest.moc"
