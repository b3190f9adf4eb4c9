#include "notch/Theme.h"
#include "notch/ThemeGradients.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFontMetricsF>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ostrelle;

namespace {

/// WCAG 2.1, relative luminance and contrast ratio.
double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrastOn(const QColor &surface, const QColor &text)
{
    const float a = text.alphaF();
    const QColor seen =
        QColor::fromRgbF(text.redF() * a + surface.redF() * (1 - a), text.greenF() * a + surface.greenF() * (1 - a),
                         text.blueF() * a + surface.blueF() * (1 - a));
    const double lighter = std::max(luminance(seen), luminance(surface));
    const double darker = std::min(luminance(seen), luminance(surface));
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

class ThemeTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void rendersFractionalSizes();
    void keepsTextReadableWhenContrastIsAskedFor();
    void darkensOnlyFrostOnALightSurface();
    void fadesTheSeamInAndOutInItsOwnColors();
    void fallsOffFromTheCorner();
};

void ThemeTest::rendersFractionalSizes()
{
    const auto heightOf = [](FontRole role) { return QFontMetricsF(Theme::font(role)).height(); };
    const double perPixel = heightOf(FontRole::Mono) / 12;
    QVERIFY(std::abs(heightOf(FontRole::MonoLarge) - 15 * perPixel) < 1);
    // 12.5 lies between 12 and 13: an advance over many letters shows what a rounded size would hide.
    const QString text(100, QLatin1Char('n'));
    QFont whole = Theme::font(FontRole::Body);
    const double advance = QFontMetricsF(whole).horizontalAdvance(text);
    whole.setStretch(QFont::Unstretched);
    whole.setPixelSize(12);
    QVERIFY(advance > QFontMetricsF(whole).horizontalAdvance(text) * 1.02);
    whole.setPixelSize(13);
    QVERIFY(advance < QFontMetricsF(whole).horizontalAdvance(text) * 0.98);
}

void ThemeTest::keepsTextReadableWhenContrastIsAskedFor()
{
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light}) {
        const Theme::Palette &palette = Theme::palette(scheme, Contrast::Increased);
        QVERIFY(contrastOn(palette.surfaceTone, palette.text2) > 7);
        QVERIFY(contrastOn(palette.surfaceTone, palette.text3) > 4.5);
        QVERIFY(contrastOn(palette.surfaceTone, Theme::palette(scheme).text1) > 11);
        QCOMPARE(palette.text1, Theme::palette(scheme).text1);
    }
}

void ThemeTest::darkensOnlyFrostOnALightSurface()
{
    for (const NotchTheme theme : kAllNotchThemes) {
        const auto dark = themeColors(theme, ColorScheme::Dark);
        const auto light = themeColors(theme, ColorScheme::Light);
        QCOMPARE(dark.size(), light.size());
        for (std::size_t i = 0; i < dark.size(); ++i) {
            if (theme == NotchTheme::Frost)
                QVERIFY(luminance(light[i]) < luminance(dark[i]) / 2);
            else
                QCOMPARE(light[i], dark[i]);
        }
        QVERIFY(cornerOpacity(theme, ColorScheme::Light) < cornerOpacity(theme, ColorScheme::Dark));
    }
    QVERIFY(luminance(themeGlow(NotchTheme::Frost, ColorScheme::Light)) <
            luminance(themeGlow(NotchTheme::Frost, ColorScheme::Dark)) / 2);
    QCOMPARE(themeGlow(NotchTheme::Aurora, ColorScheme::Dark), Theme::kCyan);
    QCOMPARE(themeGlow(NotchTheme::Spectrum, ColorScheme::Dark), Theme::kMagenta);
}

void ThemeTest::fadesTheSeamInAndOutInItsOwnColors()
{
    const QGradientStops stops = seamStops(NotchTheme::Ember, ColorScheme::Dark);
    QCOMPARE(stops.size(), 6);
    QCOMPARE(stops.first().second.alpha(), 0);
    QCOMPARE(stops.last().second.alpha(), 0);
    // A clear black or white end would tint the fade.
    QCOMPARE(stops.first().second.rgb(), stops.at(1).second.rgb());
    QCOMPARE(stops.last().second.rgb(), stops.at(4).second.rgb());
    QCOMPARE(stops.at(1).first, 0.2);
    QCOMPARE(stops.last().first, 1.0);
}

void ThemeTest::fallsOffFromTheCorner()
{
    QCOMPARE(cornerFalloff(0, 360), 1.0);
    QCOMPARE(cornerFalloff(162, 360), 0.45);
    QCOMPARE(cornerFalloff(261, 360), 0.225);
    QCOMPARE(cornerFalloff(400, 360), 0.0);
    QCOMPARE(cornerFalloff(0.45, 0), 0.45);
}

OSTRELLE_TEST(ThemeTest)
#include "ThemeTest.moc"
