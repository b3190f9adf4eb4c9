#include "platform/x11/BackdropReduction.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

namespace ostrelle {

class BackdropReductionTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void averagesEachCellAndRepeatsTheEdges()
    {
        QImage pixels(12, 8, QImage::Format_RGB32);
        pixels.fill(Qt::black);
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 4; ++x) {
                pixels.setPixel(x, y, qRgb(200, 100, 50));
            }
        }
        const QImage reduced = reduceToCells(pixels, 8, QSize(3, 2));
        QCOMPARE(reduced.pixel(0, 0), qRgb(100, 50, 25));
        QCOMPARE(reduced.pixel(1, 0), qRgb(0, 0, 0)); // four columns only
        QCOMPARE(reduced.pixel(2, 0), qRgb(0, 0, 0)); // beyond the edge
        QCOMPARE(reduced.pixel(0, 1), qRgb(100, 50, 25));
        QVERIFY(reduceToCells(QImage(), 8, QSize(3, 2)).isNull());
    }

    void replacesARegionByWhatIsJustBelow()
    {
        QImage pixels(6, 6, QImage::Format_RGB32);
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 6; ++x) {
                pixels.setPixel(x, y, qRgb(x * 10, y * 10, 0));
            }
        }
        // The third column is covered to the bottom and takes its neighbour's.
        replaceByWhatIsBelow(pixels, QRegion(1, 0, 3, 2) + QRegion(2, 0, 1, 6));
        QCOMPARE(pixels.pixel(1, 0), qRgb(10, 20, 0));
        QCOMPARE(pixels.pixel(1, 1), qRgb(10, 20, 0));
        QCOMPARE(pixels.pixel(1, 2), qRgb(10, 20, 0));
        QVERIFY(pixels.pixel(2, 5) == qRgb(10, 20, 0) || pixels.pixel(2, 5) == qRgb(30, 20, 0));
        QCOMPARE(pixels.pixel(5, 0), qRgb(50, 0, 0)); // untouched
    }
};

} // namespace ostrelle

using ostrelle::BackdropReductionTest;
OSTRELLE_TEST(BackdropReductionTest)

#include "BackdropReductionTest.moc"
