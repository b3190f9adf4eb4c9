#include "platform/loupe/LoupeLabels.h"
#include "platform/loupe/LoupeLens.h"
#include "platform/x11/PixelLayout.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

namespace ostrelle {

namespace {

/// A picture of the screen in which no two neighbours are alike.
QImage screenPart(const QRect &area)
{
    QImage image(area.size(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb((area.x() + x) * 37 % 256, (area.y() + y) * 53 % 256, (x * 7 + y * 11) % 256));
        }
    }
    return image;
}

QRect lensAround(const QPoint &hotSpot, double scale)
{
    const int radius = static_cast<int>(87 * scale);
    return {hotSpot - QPoint(radius, radius), QSize(2 * radius, 2 * radius)};
}

} // namespace

class LoupePicturesTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void magnifiesWholePixels_data();
    void magnifiesWholePixels();
    void keepsTheLabelsOnTheScreenBesideTheLens_data();
    void keepsTheLabelsOnTheScreenBesideTheLens();
    void writesTheColourIntoItsLabels();
    void knowsPixelsOfEveryDepth();
};

void LoupePicturesTest::magnifiesWholePixels_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("magnification");
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (const int magnification : {4, 9, 16}) {
            QTest::addRow("%d times at scale %g", magnification, scale) << scale << magnification;
        }
    }
}

void LoupePicturesTest::magnifiesWholePixels()
{
    QFETCH(double, scale);
    QFETCH(int, magnification);
    const LoupeLens lens(scale, LoupeLens::Shadow::Soft);
    const QPoint hotSpot(400, 300);
    const QRect area = lens.sampledArea(hotSpot, magnification);
    QCOMPARE(area.center(), hotSpot);
    const QImage sampled = screenPart(area);
    QImage canvas(lens.size(), QImage::Format_ARGB32_Premultiplied);
    lens.paint(canvas, sampled, magnification);

    // Squares of one size, the middle one at the hot spot, up to the rim: as many as fit, and no more.
    const int side = static_cast<int>(std::lround(magnification * scale));
    const int reach = static_cast<int>(153 * scale / 2) / side;
    QVERIFY(area.width() / 2 - reach <= 1);
    const QPoint middle = lens.hotSpot();
    for (int step = -reach + 1; step < reach; ++step) {
        if (std::abs(step) == 1) {
            continue; // under the frame of the middle one
        }
        for (const QPoint &cell : {QPoint(step, 0), QPoint(0, step)}) {
            QCOMPARE(canvas.pixel(middle + cell * side), sampled.pixel(sampled.rect().center() + cell));
        }
    }
    // The ring has the colour of the pixel that would be picked, the corners are clear.
    const int ring = static_cast<int>((153 / 2.0 + 5) * scale);
    QCOMPARE(canvas.pixel(lens.hotSpot() + QPoint(ring, 0)), sampled.pixel(sampled.rect().center()));
    QCOMPARE(qAlpha(canvas.pixel(0, 0)), 0);
}

void LoupePicturesTest::keepsTheLabelsOnTheScreenBesideTheLens_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("plain") << 1.0;
    QTest::newRow("fractional") << 1.5;
    QTest::newRow("dense") << 2.0;
}

void LoupePicturesTest::keepsTheLabelsOnTheScreenBesideTheLens()
{
    QFETCH(double, scale);
    const LoupeLabels labels(scale, LoupeLens::Shadow::None);
    const QRect screen(1920, 200, 1280, 1024); // one of several
    for (int y = screen.top(); y <= screen.bottom(); y += 31) {
        for (int x = screen.left(); x <= screen.right(); x += 41) {
            const QPoint hotSpot(x, y);
            const QRect picture(labels.position(hotSpot, screen), labels.size());
            QVERIFY2(screen.contains(picture), qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            QVERIFY(!picture.intersects(lensAround(hotSpot, scale)));
        }
    }
}

void LoupePicturesTest::writesTheColourIntoItsLabels()
{
    const LoupeLabels labels(1, LoupeLens::Shadow::Soft);
    QImage one(labels.size(), QImage::Format_ARGB32_Premultiplied);
    QImage other = one.copy();
    labels.paint(one, {QStringLiteral("#E2553B"), qRgb(226, 85, 59), 0});
    labels.paint(other, {QStringLiteral("#E2553B"), qRgb(226, 85, 59), 0});
    QCOMPARE(one, other); // nothing is left of what the canvas was before
    labels.paint(other, {QStringLiteral("#000000"), qRgb(226, 85, 59), 0});
    QVERIFY(one != other);
    labels.paint(other, {QStringLiteral("#E2553B"), qRgb(226, 85, 59), 3});
    QVERIFY(one != other);
}

void LoupePicturesTest::knowsPixelsOfEveryDepth()
{
    const auto value = [](const PixelLayout &layout, std::initializer_list<uchar> bytes) {
        return layout.valueAt(bytes.begin());
    };
    const PixelLayout plain(32, 0xff0000, 0xff00, 0xff, /*isBigEndian=*/false);
    QCOMPARE(plain.colour(value(plain, {51, 102, 255, 0})), (PickedColour{1, 0.4, 0.2}));
    QCOMPARE(plain.rgb(0x00ff6633), qRgb(255, 102, 51));
    const PixelLayout swapped(32, 0xff0000, 0xff00, 0xff, /*isBigEndian=*/true);
    QCOMPARE(swapped.colour(value(swapped, {0, 255, 102, 51})), (PickedColour{1, 0.4, 0.2}));
    // Ten bits a component: one step more than eight bits can tell apart.
    const PixelLayout deep(32, 0x3ff00000, 0xffc00, 0x3ff, /*isBigEndian=*/false);
    QCOMPARE(deep.colour((513U << 20) | (1023U << 10) | 1U), (PickedColour{513.0 / 1023, 1, 1.0 / 1023}));
    QCOMPARE(deep.rgb((513U << 20) | (1023U << 10) | 1U), qRgb(128, 255, 0));
    const PixelLayout shallow(16, 0xf800, 0x7e0, 0x1f, /*isBigEndian=*/false);
    QCOMPARE(shallow.colour(value(shallow, {0x1f, 0xf8})), (PickedColour{1, 0, 1}));
}

} // namespace ostrelle

using ostrelle::LoupePicturesTest;
OSTRELLE_TEST(LoupePicturesTest)

#include "LoupePicturesTest.moc"
