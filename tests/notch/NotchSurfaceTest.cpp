#include "notch/NotchSurface.h"
#include "notch/ThemeGradients.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ostrelle;
using Glass = SurfaceState::Glass;

namespace {

constexpr QSizeF kOpenSize{588, 154};
constexpr QSizeF kWindow{700, 210};
const QRectF kOpenRect{{(kWindow.width() - kOpenSize.width()) / 2, 0}, kOpenSize};

QImage plainBackdrop(QRgb color)
{
    QImage image(90, 30, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

SurfaceState openState(ColorScheme scheme, NotchTheme theme = NotchTheme::Spectrum)
{
    SurfaceState state;
    state.size = kOpenSize;
    state.expansion = 1;
    state.bottomRadius = 26;
    state.topRadius = 12;
    state.scheme = scheme;
    state.theme = theme;
    state.backdrop = plainBackdrop(qRgb(100, 120, 140));
    return state;
}

SurfaceState stateAt(double expansion, ColorScheme scheme, Glass glass = Glass::Snapshot)
{
    SurfaceState state = openState(scheme);
    state.expansion = expansion;
    state.glass = glass;
    return state;
}

QImage blankWindow(double scale = 1)
{
    QImage image((kWindow * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

QImage painted(const SurfaceState &state, SurfaceCache &cache, double scale = 1)
{
    QImage image = blankWindow(scale);
    QPainter painter(&image);
    paintNotchSurface(painter, {kWindow.width() / 2, 0}, state, cache);
    return image;
}

QImage painted(const SurfaceState &state, double scale = 1)
{
    SurfaceCache cache;
    return painted(state, cache, scale);
}

/// The stored pixel, premultiplied, at a place on the open surface.
QRgb pixelAt(const QImage &image, double x, double y)
{
    const QPoint place = QPointF(kOpenRect.x() + x, y).toPoint();
    return reinterpret_cast<const QRgb *>(image.constScanLine(place.y()))[place.x()];
}

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b)),
                     std::abs(qAlpha(a) - qAlpha(b))});
}

int largestDistance(const QImage &a, const QImage &b, const QRect &area)
{
    int largest = 0;
    for (int y = area.y(); y < area.y() + area.height(); ++y) {
        const auto *lineA = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *lineB = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        for (int x = area.x(); x < area.x() + area.width(); ++x)
            largest = std::max(largest, distance(lineA[x], lineB[x]));
    }
    return largest;
}

/// The smooth layers as the painter's own gradients draw them, one over the other at full size.
QImage layersByGradients(const SurfaceState &state)
{
    const bool dark = state.scheme == ColorScheme::Dark;
    const QRectF rect({0, 0}, state.size);
    QImage pool(state.size.toSize(), QImage::Format_ARGB32_Premultiplied);
    pool.fill(Qt::transparent);
    QPainter poolPainter(&pool);
    QLinearGradient colors(rect.bottomLeft(), rect.topRight());
    colors.setStops(themeStops(state.theme, state.scheme));
    poolPainter.fillRect(rect, colors);
    QRadialGradient mask(QPointF(-0.02 * rect.width(), 1.04 * rect.height()), std::min(0.6 * rect.width(), 360.0));
    mask.setStops({{0, QColor(0, 0, 0, 255)}, {0.45, QColor(0, 0, 0, 115)}, {1, QColor(0, 0, 0, 0)}});
    poolPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    poolPainter.fillRect(rect, mask);
    poolPainter.end();

    QImage image(pool.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(state.backdrop.pixel(0, 0));
    QPainter painter(&image);
    if (dark)
        painter.fillRect(rect, QColor::fromRgbF(0, 0, 0, 0.8F));
    else
        painter.fillRect(rect, QColor::fromRgbF(0.976F, 0.973F, 0.984F, 0.84F));
    painter.setOpacity(cornerOpacity(state.theme, state.scheme));
    if (dark)
        painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.drawImage(0, 0, pool);
    QLinearGradient sheen(rect.topLeft(), rect.bottomLeft());
    const auto white = [](double opacity) { return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity)); };
    sheen.setStops({{0, white(0.13)}, {0.22, white(0.0364)}, {0.6, white(0)}, {1, white(0.052)}});
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.setOpacity(dark ? 1 : 0.55);
    painter.fillRect(rect, sheen);
    return image;
}

} // namespace

class NotchSurfaceTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void isPureBlackWhileClosed_data();
    void isPureBlackWhileClosed();
    void letsTheBackdropThroughBeforeTheSeamLights();
    void agreesWithPlainGradients_data();
    void agreesWithPlainGradients();
    void clearsTheLightGlassForMoreContrast();
    void lightsTheSeamInTheThemesColors();
    void showsTheRimAtItsCornerOnly();
    void casts46AtMostAndNothingInside();
    void shadesBothSidesAlike_data();
    void shadesBothSidesAlike();
    void staysInsideTheOutlineWithoutACompositor();
    void agreesWithItselfWhenCached();
    void agreesWithItselfAtTwiceTheScale_data();
    void agreesWithItselfAtTwiceTheScale();
    void showsTheBackdropWhereItWasTaken();
};

void NotchSurfaceTest::isPureBlackWhileClosed_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<Glass>("glass");
    QTest::newRow("dark, snapshot") << ColorScheme::Dark << Glass::Snapshot;
    QTest::newRow("light, snapshot") << ColorScheme::Light << Glass::Snapshot;
    QTest::newRow("light, compositor") << ColorScheme::Light << Glass::Compositor;
    QTest::newRow("light, none") << ColorScheme::Light << Glass::None;
}

void NotchSurfaceTest::isPureBlackWhileClosed()
{
    QFETCH(ColorScheme, scheme);
    QFETCH(Glass, glass);
    for (const double expansion : {0.0, -0.02}) {
        const SurfaceState state = stateAt(expansion, scheme, glass);
        const QImage image = painted(state);
        const QPainterPath outline = surfaceOutline({kWindow.width() / 2, 0}, state);
        int black = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                QCOMPARE(pixel & 0xffffff, 0U);
                if (outline.contains(QRectF(x, y, 1, 1)))
                    QCOMPARE(qAlpha(pixel), 255);
                else if (!outline.intersects(QRectF(x - 1, y - 1, 3, 3)))
                    QCOMPARE(qAlpha(pixel), 0);
                black += qAlpha(pixel) == 255 ? 1 : 0;
            }
        }
        QVERIFY(black > 0.99 * kOpenSize.width() * kOpenSize.height() - 300);
    }
}

void NotchSurfaceTest::letsTheBackdropThroughBeforeTheSeamLights()
{
    // Right of the pool's reach, so that the theme shows in the seam only.
    const double x = 450;
    const double seamY = kOpenSize.height() - 8.75;
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
        SurfaceState spectrum = stateAt(0.3, scheme);
        SurfaceState ember = spectrum;
        ember.theme = NotchTheme::Ember;
        QCOMPARE(pixelAt(painted(spectrum), x, seamY), pixelAt(painted(ember), x, seamY));
        spectrum.expansion = 0.5;
        ember.expansion = 0.5;
        QVERIFY(distance(pixelAt(painted(spectrum), x, seamY), pixelAt(painted(ember), x, seamY)) > 30);
    }
    // An eighth of the way: veil 0.975 in dark, 0.875 and wash 0.105 in light.
    const double middle = 0.6 * kOpenSize.height();
    const QRgb dark = pixelAt(painted(stateAt(0.3, ColorScheme::Dark, Glass::Compositor)), x, middle);
    QVERIFY(distance(dark, qRgba(0, 0, 0, 249)) <= 1);
    const QRgb light = pixelAt(painted(stateAt(0.3, ColorScheme::Light, Glass::Compositor)), x, middle);
    QVERIFY(distance(light, qRgba(26, 26, 26, 226)) <= 1);
    // With a snapshot an eighth of it lies under the veil, and nothing sharp shows through in the end.
    QCOMPARE(qAlpha(pixelAt(painted(stateAt(1, ColorScheme::Dark)), x, middle)), 255);
    QCOMPARE(qAlpha(pixelAt(painted(stateAt(1.02, ColorScheme::Light)), x, middle)), 255);
}

void NotchSurfaceTest::agreesWithPlainGradients_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<NotchTheme>("theme");
    for (const NotchTheme theme : kAllNotchThemes) {
        QTest::addRow("dark, %d", static_cast<int>(theme)) << ColorScheme::Dark << theme;
        QTest::addRow("light, %d", static_cast<int>(theme)) << ColorScheme::Light << theme;
    }
}

void NotchSurfaceTest::agreesWithPlainGradients()
{
    QFETCH(ColorScheme, scheme);
    QFETCH(NotchTheme, theme);
    const SurfaceState state = openState(scheme, theme);
    const QImage surface = painted(state).copy(kOpenRect.toRect());
    // Without the rims, and above the seam's glow.
    const QRect smooth(2, 2, surface.width() - 4, surface.height() - 40);
    const QImage expected = layersByGradients(state);
    QVERIFY2(largestDistance(surface, expected, smooth) <= 3,
             qPrintable(QString::number(largestDistance(surface, expected, smooth))));
}

void NotchSurfaceTest::clearsTheLightGlassForMoreContrast()
{
    SurfaceState state = openState(ColorScheme::Light);
    const double middle = 0.6 * kOpenSize.height();
    const QRgb normal = pixelAt(painted(state), 450, middle);
    state.contrast = Contrast::Increased;
    const QRgb increased = pixelAt(painted(state), 450, middle);
    QVERIFY(distance(increased, qRgb(240, 240, 244)) <= 2);
    QVERIFY(qRed(increased) > qRed(normal) + 10);
}

void NotchSurfaceTest::lightsTheSeamInTheThemesColors()
{
    const double y = kOpenSize.height() - 8.75;
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
        const QImage image = painted(openState(scheme, NotchTheme::Spectrum), 2);
        const auto seamAt = [&](double x) { return image.pixel(QPointF(2 * (kOpenRect.x() + x), 2 * y).toPoint()); };
        QVERIFY(distance(seamAt(294), Theme::kPurple.rgba()) <= 3);
        // The ends are clear, 14.3 from the sides.
        QVERIFY(distance(seamAt(13), seamAt(15)) <= 3);
        QVERIFY(distance(seamAt(575), seamAt(573)) <= 3);
    }
    const auto lightness = [y](ColorScheme scheme) {
        return qGray(pixelAt(painted(openState(scheme, NotchTheme::Frost)), 200, y));
    };
    QVERIFY(lightness(ColorScheme::Dark) > 180);
    QVERIFY(lightness(ColorScheme::Light) < 160);
    // The glow reaches further than the line, and not to the middle.
    const QImage image = painted(openState(ColorScheme::Dark));
    QVERIFY(qRed(pixelAt(image, 500, y - 4)) > qRed(pixelAt(image, 500, y - 30)) + 8);
}

void NotchSurfaceTest::showsTheRimAtItsCornerOnly()
{
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
        const QImage image = painted(openState(scheme, NotchTheme::Aurora), 2);
        const auto edgeAt = [&](double x, double y) {
            return image.pixel(QPointF(2 * (kOpenRect.x() + x), 2 * y).toPoint());
        };
        const auto saturation = [](QRgb color) { return qGreen(color) - qRed(color); };
        const int left = saturation(edgeAt(0, 110)) - saturation(edgeAt(3, 110));
        QVERIFY(left > (scheme == ColorScheme::Dark ? 60 : 20));
        const int right = saturation(edgeAt(587.6, 110)) - saturation(edgeAt(584, 110));
        QVERIFY(std::abs(right) <= 4);
        // Neutral there, and lighter than the glass.
        QVERIFY(qGray(edgeAt(587.6, 110)) > qGray(edgeAt(584, 110)));
    }
}

void NotchSurfaceTest::casts46AtMostAndNothingInside()
{
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
        const QImage image = painted(stateAt(1, scheme, Glass::Compositor));
        const auto alpha = [&](double x, double y) { return qAlpha(pixelAt(image, x, y)); };
        const double bottom = kOpenSize.height();
        // 1.5 wide under the edge, then the shadows, gone after 46.
        QVERIFY(alpha(294, bottom + 0.5) > alpha(294, bottom + 3));
        QVERIFY(alpha(294, bottom + 3) > alpha(294, bottom + 20));
        QVERIFY(alpha(294, bottom + 20) > 4);
        QVERIFY(alpha(294, bottom + 46) <= 1);
        QVERIFY(alpha(-46, 100) <= 1);
        QVERIFY(alpha(-14, 100) > 2 * alpha(-14, 2));
        // Beyond the ear's tip there is nothing but the wide shadow.
        QVERIFY(alpha(-14, 1) < 12);
        // What it is inside has the veil or the wash and the sheen, never a shadow as well.
        const double clear = scheme == ColorScheme::Dark ? 0.8 : 0.84;
        const double sheen =
            (scheme == ColorScheme::Dark ? 0.052 : 0.55 * 0.052) * (bottom - 35 - 0.6 * bottom) / (0.4 * bottom);
        QVERIFY(std::abs(alpha(500, bottom - 35) - 255 * (clear + sheen)) <= 2);
        QVERIFY(std::abs(alpha(560, 93) - 255 * clear) <= 2);
    }
    QCOMPARE(qAlpha(pixelAt(painted(stateAt(0.2, ColorScheme::Dark)), 294, kOpenSize.height() + 3)), 0);
}

void NotchSurfaceTest::shadesBothSidesAlike_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("1") << 1.0 << kOpenSize;
    QTest::newRow("1.25, odd size") << 1.25 << QSizeF(421.37, 99.2);
    QTest::newRow("2, small") << 2.0 << QSizeF(240.5, 40.5);
}

void NotchSurfaceTest::shadesBothSidesAlike()
{
    QFETCH(double, scale);
    QFETCH(QSizeF, size);
    // Grey of every layer, so that only the geometry is left: the theme's pool and rim are on one side.
    SurfaceState state = stateAt(1, ColorScheme::Light);
    state.size = size;
    const QImage image = painted(state, scale);
    const QImage mirror = image.mirrored(true, false);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width() / 2; ++x)
            QVERIFY2(std::abs(qAlpha(image.pixel(x, y)) - qAlpha(mirror.pixel(x, y))) <= 2,
                     qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
    }
}

void NotchSurfaceTest::staysInsideTheOutlineWithoutACompositor()
{
    for (const double expansion : {0.4, 1.0}) {
        for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
            SurfaceState state = stateAt(expansion, scheme, Glass::None);
            state.backdrop = {};
            const QImage image = painted(state);
            const QPainterPath outline = surfaceOutline({kWindow.width() / 2, 0}, state);
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const int alpha = qAlpha(image.pixel(x, y));
                    QVERIFY(alpha == 0 || alpha == 255);
                    if (outline.contains(QPointF(x + 0.5, y + 0.5)))
                        QCOMPARE(alpha, 255);
                    else if (!outline.intersects(QRectF(x - 1, y - 1, 3, 3)))
                        QCOMPARE(alpha, 0);
                }
            }
        }
    }
}

void NotchSurfaceTest::agreesWithItselfWhenCached()
{
    QList<SurfaceState> states;
    for (const double expansion : {0.0, 0.1, 0.35, 0.8, 1.0, 1.01}) {
        states.append(stateAt(expansion, ColorScheme::Dark));
        states.last().size = {192 + 396 * expansion, 24 + 130 * expansion};
    }
    states.append(stateAt(1, ColorScheme::Light));
    states.append(openState(ColorScheme::Dark, NotchTheme::Frost));
    states.append(openState(ColorScheme::Dark, NotchTheme::Frost));
    states.append(openState(ColorScheme::Dark));
    states.last().backdrop = plainBackdrop(qRgb(10, 200, 30));
    states.append(stateAt(1, ColorScheme::Dark, Glass::None));
    states.append(stateAt(1, ColorScheme::Dark, Glass::Compositor));
    states.append(stateAt(0, ColorScheme::Dark));
    SurfaceCache cache;
    for (const double scale : {1.0, 1.5}) {
        for (const SurfaceState &state : states)
            QVERIFY(painted(state, cache, scale) == painted(state, scale));
    }

    // A repaint of a part, by a painter that was moved, gives the same pixels there.
    const SurfaceState state = openState(ColorScheme::Dark);
    const QImage whole = painted(state, cache);
    QImage part = whole;
    const QRect area(300, 20, 90, 170);
    QPainter painter(&part);
    painter.setClipRect(area);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(area, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.translate(100, 10);
    paintNotchSurface(painter, {kWindow.width() / 2 - 100, -10}, state, cache);
    QCOMPARE(painter.transform(), QTransform::fromTranslate(100, 10));
    painter.end();
    QVERIFY(part == whole);
}

void NotchSurfaceTest::agreesWithItselfAtTwiceTheScale_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<double>("expansion");
    QTest::newRow("dark") << ColorScheme::Dark << 1.0;
    QTest::newRow("light") << ColorScheme::Light << 1.0;
    QTest::newRow("half open") << ColorScheme::Dark << 0.6;
}

void NotchSurfaceTest::agreesWithItselfAtTwiceTheScale()
{
    QFETCH(ColorScheme, scheme);
    QFETCH(double, expansion);
    SurfaceState state = stateAt(expansion, scheme);
    for (int i = 0; i < state.backdrop.width(); ++i)
        state.backdrop.setPixel(i, 8, qRgb(3 * i % 256, 40, 200));
    const QImage once = painted(state);
    QImage reduced = painted(state, 2);
    reduced.setDevicePixelRatio(1);
    reduced = reduced.scaled(once.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double sum = 0;
    int far = 0;
    for (int y = 0; y < once.height(); ++y) {
        for (int x = 0; x < once.width(); ++x) {
            const int difference = distance(once.pixel(x, y), reduced.pixel(x, y));
            sum += difference;
            far += difference > 16 ? 1 : 0;
        }
    }
    QVERIFY2(sum / (once.width() * once.height()) < 0.6, qPrintable(QString::number(sum)));
    QVERIFY2(far < 60, qPrintable(QString::number(far)));
}

void NotchSurfaceTest::showsTheBackdropWhereItWasTaken()
{
    // Red left of the middle, blue right of it, in an area that does not lie on whole cells.
    SurfaceState state = openState(ColorScheme::Dark, NotchTheme::Frost);
    state.backdropArea = {-333, 0, 666, 222};
    for (int y = 0; y < state.backdrop.height(); ++y) {
        for (int x = 0; x < state.backdrop.width(); ++x)
            state.backdrop.setPixel(x, y, x < 45 ? qRgb(250, 0, 0) : qRgb(0, 0, 250));
    }
    const QImage image = painted(state);
    const double y = 0.6 * kOpenSize.height();
    const auto redness = [&](double x) { return qRed(pixelAt(image, x, y)) - qBlue(pixelAt(image, x, y)); };
    QVERIFY(redness(280) > 40);
    QVERIFY(redness(308) < -40);
    QVERIFY(std::abs(redness(294)) < 12);
}

OSTRELLE_TEST(NotchSurfaceTest)
#include "NotchSurfaceTest.moc"
