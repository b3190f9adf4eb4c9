#include "notch/Backdrop.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QImage>
#include <QTest>

#include <cmath>

using namespace ostrelle;

namespace {

QImage filled(const QSize &size, QRgb color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class BackdropTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsAPlainColorUpToItsGrading();
    void spreadsAStripeLikeAGaussian_data();
    void spreadsAStripeLikeAGaussian();
    void doesNotDarkenTowardTheScreensEdge();
    void takesAnyFormatAndSize();
};

void BackdropTest::keepsAPlainColorUpToItsGrading()
{
    const QImage grey = filled({40, 30}, qRgb(100, 100, 100));
    QCOMPARE(blurBackdrop(grey, ColorScheme::Light).pixel(20, 15), qRgb(100, 100, 100));
    QCOMPARE(blurBackdrop(grey, ColorScheme::Dark).pixel(20, 15), qRgb(120, 120, 120));
    // Saturation pushes the channels apart around an unchanged luminance.
    const QRgb blue = blurBackdrop(filled({40, 30}, qRgb(100, 120, 160)), ColorScheme::Light).pixel(20, 15);
    QCOMPARE(qBlue(blue) - qRed(blue), 90);
    QVERIFY(std::abs(0.2126 * qRed(blue) + 0.7152 * qGreen(blue) + 0.0722 * qBlue(blue) - 118.6) < 1);
}

void BackdropTest::spreadsAStripeLikeAGaussian_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<double>("deviation");
    QTest::newRow("dark") << ColorScheme::Dark << 26.0;
    QTest::newRow("light") << ColorScheme::Light << 30.0;
}

void BackdropTest::spreadsAStripeLikeAGaussian()
{
    QFETCH(ColorScheme, scheme);
    QFETCH(double, deviation);
    QImage stripe = filled({81, 40}, qRgb(0, 0, 0));
    for (int y = 0; y < 40; ++y) {
        for (int x = 38; x <= 42; ++x)
            stripe.setPixel(x, y, qRgb(200, 200, 200));
    }
    const QImage blurred = blurBackdrop(stripe, scheme);
    double sum = 0;
    double squares = 0;
    for (int x = 0; x < 81; ++x) {
        const double value = qRed(blurred.pixel(x, 20));
        sum += value;
        squares += value * (x - 40) * (x - 40);
        QCOMPARE(qRed(blurred.pixel(80 - x, 20)), qRed(blurred.pixel(x, 20)));
    }
    const double stripeVariance = 2; // of five equal pixels
    QVERIFY(std::abs(std::sqrt(squares / sum - stripeVariance) - deviation / kBackdropReduction) < 0.05);
}

void BackdropTest::doesNotDarkenTowardTheScreensEdge()
{
    // A bright bar along the top: mirrored beyond the edge it stays brightest there.
    QImage image = filled({40, 40}, qRgb(20, 20, 20));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 40; ++x)
            image.setPixel(x, y, qRgb(200, 200, 200));
    }
    const QImage blurred = blurBackdrop(image, ColorScheme::Light);
    QVERIFY(qRed(blurred.pixel(20, 0)) > 105);
    for (int y = 1; y < 40; ++y)
        QVERIFY(qRed(blurred.pixel(20, y)) <= qRed(blurred.pixel(20, y - 1)));
    for (const QPoint corner : {QPoint(0, 0), QPoint(39, 0)})
        QCOMPARE(blurred.pixel(corner), blurred.pixel(20, 0));
}

void BackdropTest::takesAnyFormatAndSize()
{
    QVERIFY(blurBackdrop(QImage(), ColorScheme::Dark).isNull());
    for (const QSize size : {QSize(1, 1), QSize(3, 60), QSize(60, 2)}) {
        QImage image = filled(size, qRgb(50, 50, 50)).convertToFormat(QImage::Format_RGBA8888);
        const QImage blurred = blurBackdrop(image, ColorScheme::Light);
        QCOMPARE(blurred.size(), size);
        QCOMPARE(blurred.pixel(size.width() - 1, size.height() - 1), qRgb(50, 50, 50));
    }
}

OSTRELLE_TEST(BackdropTest)
#include "BackdropTest.moc"
