#include "media_helper/RowShrinker.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ostrelle;

/// Against the mean computed the slow way.
class RowShrinkerTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPixelIsTheMeanOfItsArea_data();
    void everyPixelIsTheMeanOfItsArea();
    void transparentColoursDoNotBleed();
};

namespace {

double overlap(double from, double to, int pixel)
{
    return std::max(0.0, std::min(to, pixel + 1.0) - std::max<double>(from, pixel));
}

double mean(const Raster &source, const PixelArea &area, PixelSize target, int x, int y)
{
    const double stepX = double(area.size.width) / target.width;
    const double stepY = double(area.size.height) / target.height;
    double sum = 0;
    for (int row = 0; row < area.size.height; ++row) {
        const double weight = overlap(y * stepY, (y + 1) * stepY, row);
        for (int column = 0; weight > 0 && column < area.size.width; ++column) {
            const std::size_t at = static_cast<std::size_t>((area.top + row) * source.size.width + area.left + column);
            sum += weight * overlap(x * stepX, (x + 1) * stepX, column) * source.bytes[at];
        }
    }
    return sum / (stepX * stepY);
}

} // namespace

void RowShrinkerTest::everyPixelIsTheMeanOfItsArea_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("targetWidth");
    QTest::addColumn<int>("targetHeight");
    QTest::newRow("whole ratio") << 40 << 20 << 10 << 5;
    QTest::newRow("odd ratio") << 37 << 23 << 10 << 7;
    QTest::newRow("nearly the same") << 37 << 23 << 36 << 22;
    QTest::newRow("same") << 9 << 7 << 9 << 7;
    QTest::newRow("to one") << 33 << 1200 << 1 << 1;
    QTest::newRow("very tall") << 2 << 5000 << 1 << 16;
}

void RowShrinkerTest::everyPixelIsTheMeanOfItsArea()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, targetWidth);
    QFETCH(int, targetHeight);
    constexpr int kMargin = 3; // what lies around the area that is wanted
    Raster source{{width + 2 * kMargin, height + 2 * kMargin}, PixelLayout::Gray, {}};
    QRandomGenerator random(1);
    for (int i = 0; i < source.size.width * source.size.height; ++i)
        source.bytes.push_back(static_cast<std::uint8_t>(random.bounded(256)));
    const PixelArea area{kMargin, kMargin, {width, height}};
    const PixelSize target{targetWidth, targetHeight};
    RowShrinker shrinker(area, target, PixelLayout::Gray);
    for (int row = 0; row < source.size.height; ++row)
        shrinker.add(source.bytes.data() + row * source.size.width);
    const Raster result = shrinker.take();
    for (int y = 0; y < targetHeight; ++y) {
        for (int x = 0; x < targetWidth; ++x) {
            const double value = result.bytes[static_cast<std::size_t>(y * targetWidth + x)];
            QVERIFY(std::abs(value - mean(source, area, target, x, y)) <= 0.51);
        }
    }
}

void RowShrinkerTest::transparentColoursDoNotBleed()
{
    const std::uint8_t row[] = {200, 100, 50, 255, 255, 255, 255, 0};
    RowShrinker shrinker({0, 0, {2, 1}}, {1, 1}, PixelLayout::Rgba);
    shrinker.add(row);
    const Raster result = shrinker.take();
    QCOMPARE(result.bytes, (std::vector<std::uint8_t>{200, 100, 50, 128}));
}

OSTRELLE_TEST(RowShrinkerTest)
#include "RowShrinkerTest.moc"
