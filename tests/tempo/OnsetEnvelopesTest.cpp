#include "tempo/OnsetEnvelopes.h"

#include "support/Pattern.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

using namespace ostrelle;

class OnsetEnvelopesTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void needThirtyThreeFrames();
    void areThoseOfPlainLoops();
    void riseAboveTheMeanOfTheLastThirty();
};

namespace {

constexpr std::size_t kFrame = 512;
constexpr std::size_t kHop = 128;

/// Magnitudes of a frame by the definition of the Fourier transform; the highest frequency is counted into the lowest.
std::vector<double> magnitudes(const float *samples)
{
    std::vector<std::complex<double>> bins(kFrame / 2 + 1);
    for (std::size_t b = 0; b < bins.size(); ++b) {
        for (std::size_t k = 0; k < kFrame; ++k) {
            const double hann = 1 - std::cos(2 * std::numbers::pi * double(k) / double(kFrame));
            const double angle = -2 * std::numbers::pi * double(b * k % kFrame) / double(kFrame);
            bins[b] += std::polar(double(samples[k]) * hann, angle);
        }
    }
    std::vector<double> result(kFrame / 2);
    std::transform(bins.begin(), bins.end() - 1, result.begin(),
                   [](std::complex<double> bin) { return std::abs(bin); });
    result[0] = std::hypot(bins.front().real(), bins.back().real());
    return result;
}

struct Flux
{
    std::vector<double> full;
    std::vector<double> low;
};

Flux fluxByPlainLoops(const std::vector<float> &samples)
{
    Flux flux;
    std::vector<double> before(kFrame / 2, 0.0);
    for (std::size_t start = 0; start + kFrame <= samples.size(); start += kHop) {
        const std::vector<double> now = magnitudes(&samples[start]);
        double full = 0;
        double low = 0;
        for (std::size_t b = 0; b < now.size(); ++b) {
            const double gain = std::max(0.0, now[b] - before[b]);
            full += gain;
            low += b <= 8 ? gain : 0;
        }
        flux.full.push_back(full);
        flux.low.push_back(low);
        before = now;
    }
    return flux;
}

std::vector<double> aboveLocalMean(const std::vector<double> &values)
{
    std::vector<double> result;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t first = i < 29 ? 0 : i - 29;
        double sum = 0;
        for (std::size_t k = first; k <= i; ++k)
            sum += values[k];
        result.push_back(std::max(0.0, values[i] - sum / double(i - first + 1)));
    }
    return result;
}

/// Equal up to one factor for all, which nothing that follows depends on.
bool isProportional(const std::vector<float> &values, const std::vector<double> &expected)
{
    const double most = *std::max_element(expected.begin(), expected.end());
    const double scale = *std::max_element(values.begin(), values.end()) / most;
    return std::equal(values.begin(), values.end(), expected.begin(), expected.end(), [&](float value, double wanted) {
        return std::abs(double(value) / scale - wanted) < 1e-5 * most;
    });
}

} // namespace

void OnsetEnvelopesTest::needThirtyThreeFrames()
{
    QVERIFY(!onsetEnvelopes({}));
    QVERIFY(!onsetEnvelopes(noise(kFrame + 32 * kHop - 1)));
    const auto envelopes = onsetEnvelopes(noise(kFrame + 32 * kHop));
    QVERIFY(envelopes);
    QCOMPARE(envelopes->full.size(), std::size_t(33));
    QCOMPARE(envelopes->low.size(), std::size_t(33));
    QVERIFY(std::all_of(envelopes->full.begin() + 1, envelopes->full.end(), [](float value) { return value >= 0; }));
}

void OnsetEnvelopesTest::areThoseOfPlainLoops()
{
    // Bursts over both ends of the spectrum, which share a bin.
    std::vector<float> samples = noise(kFrame + 40 * kHop);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const float level = i / 700 % 2 == 1 ? 1.0F : 0.05F;
        samples[i] = level * (samples[i] + 0.8F + (i % 2 == 0 ? 0.6F : -0.6F));
    }
    const auto envelopes = onsetEnvelopes(samples);
    QVERIFY(envelopes);
    const Flux flux = fluxByPlainLoops(samples);
    QVERIFY(isProportional(envelopes->full, aboveLocalMean(flux.full)));
    QVERIFY(isProportional(envelopes->low, aboveLocalMean(flux.low)));
}

void OnsetEnvelopesTest::riseAboveTheMeanOfTheLastThirty()
{
    QVERIFY(rectifyAgainstLocalMean({}).empty());
    QCOMPARE(rectifyAgainstLocalMean(std::vector<float>{4, 0, 8, 4}), (std::vector<float>{0, 0, 4, 0}));

    std::vector<float> values(32);
    values[0] = 30;
    values[29] = 6; // beside the first: a mean of 36 / 30
    values[30] = 3; // the first one has left: 9 / 30
    const std::vector<float> result = rectifyAgainstLocalMean(values);
    QCOMPARE(result[0], 0.0F);
    QCOMPARE(result[29], 4.8F);
    QCOMPARE(result[30], 2.7F);
    QCOMPARE(result[31], 0.0F);
}

OSTRELLE_TEST(OnsetEnvelopesTest)
#include "OnsetEnvelopesTest.moc"
