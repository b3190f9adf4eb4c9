#include "records/ColorText.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ostrelle;

namespace {

std::optional<SampledColor> parsed(const char *text)
{
    return colorFromText(QString::fromUtf8(text));
}

SampledColor of255(int red, int green, int blue)
{
    return {red / 255.0, green / 255.0, blue / 255.0};
}

bool isClose(const SampledColor &a, const SampledColor &b)
{
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)}) < 1e-9;
}

} // namespace

class ColorTextTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void writesThreeForms_data();
    void writesThreeForms();
    void keepsTheHueWithinItsCircle();
    void roundsHalfAwayFromZero();
    void readsWhatIsTyped();
    void readsBackWhatItWrites();
    void refusesWhatIsNoColor();
};

void ColorTextTest::writesThreeForms_data()
{
    QTest::addColumn<QList<double>>("components");
    QTest::addColumn<QString>("forms");
    const auto row = [](QList<double> components, const char *forms) {
        QTest::newRow(forms) << components << QString::fromUtf8(forms);
    };
    row({1, 0.5, 0}, "#FF8000 | 255, 128, 0 | 30°, 100%, 50%");
    row({1, 1, 1}, "#FFFFFF | 255, 255, 255 | 0°, 0%, 100%");
    row({0, 0, 0}, "#000000 | 0, 0, 0 | 0°, 0%, 0%");
    row({0.5, 0.5, 0.5}, "#808080 | 128, 128, 128 | 0°, 0%, 50%");
    row({1, 0, 0}, "#FF0000 | 255, 0, 0 | 0°, 100%, 50%");
    row({0, 1, 0.5}, "#00FF80 | 0, 255, 128 | 150°, 100%, 50%");
    row({0, 0, 1}, "#0000FF | 0, 0, 255 | 240°, 100%, 50%");
    row({1, 0, 1}, "#FF00FF | 255, 0, 255 | 300°, 100%, 50%"); // the larger of two largest is the first one
    row({1, 1, 0}, "#FFFF00 | 255, 255, 0 | 60°, 100%, 50%");
    row({1, 0, 0.005}, "#FF0001 | 255, 0, 1 | 360°, 100%, 50%");
    row({0.75, 0.5, 0.75}, "#BF80BF | 191, 128, 191 | 300°, 33%, 63%"); // 0.5 is of the lower half, 0.625 is not
    row({247 / 255.0, 178 / 255.0, 103 / 255.0}, "#F7B267 | 247, 178, 103 | 31°, 90%, 69%");
}

void ColorTextTest::writesThreeForms()
{
    QFETCH(QList<double>, components);
    const SampledColor color{components[0], components[1], components[2]};
    QTEST((QStringList{color.hexString(), color.rgbString(), color.hslString()}.join(QStringLiteral(" | "))), "forms");
    QCOMPARE(color.id(), color.hexString());
}

void ColorTextTest::keepsTheHueWithinItsCircle()
{
    // Once around with full saturation: each hue is the one it was made of.
    for (int hue = 0; hue < 360; ++hue) {
        const auto color = colorFromText(QStringLiteral("hsl(%1 100% 50%)").arg(hue));
        const double measured = color->hsl().hueDegrees;
        QVERIFY2(std::abs(measured - hue) < 1e-9, qPrintable(QString::number(measured, 'g', 17)));
    }
    QRandomGenerator random(11);
    for (int i = 0; i < 2000; ++i) {
        const SampledColor color{random.generateDouble(), random.generateDouble(), random.generateDouble()};
        const auto [hue, saturation, lightness] = color.hsl();
        QVERIFY(hue >= 0 && hue < 360 && saturation > 0 && saturation <= 1 + 1e-12 && lightness > 0 && lightness < 1);
        const auto back = colorFromText(QStringLiteral("hsl(%1 %2% %3%)")
                                            .arg(hue, 0, 'g', 17)
                                            .arg(std::min(saturation, 1.0) * 100, 0, 'g', 17)
                                            .arg(lightness * 100, 0, 'g', 17));
        QVERIFY(back && isClose(*back, color));
    }
}

void ColorTextTest::roundsHalfAwayFromZero()
{
    // A component of n / 510 with an odd n is just between two steps.
    for (int odd = 1; odd < 510; odd += 2) {
        const double between = odd / 510.0;
        QCOMPARE((SampledColor{between, 0, 0}.rgb255().red), static_cast<int>(std::floor(between * 255 + 0.5)));
    }
    QCOMPARE((SampledColor{0.5, 0.5, 0.5}.rgb255()), (SampledColor::Rgb255{128, 128, 128}));
    QCOMPARE((SampledColor{-0.5 / 255, 0, 0}.rgb255().red), -1);
    QCOMPARE((SampledColor{0.125, 0.125, 0.125}.hslString()), QStringLiteral("0°, 0%, 13%")); // 12.5
}

void ColorTextTest::readsWhatIsTyped()
{
    const auto verify = [](const SampledColor &color, const std::initializer_list<const char *> &texts) {
        for (const char *text : texts) {
            const auto read = parsed(text);
            QVERIFY2(read && isClose(*read, color), text);
        }
    };
    verify(of255(255, 128, 0), {"#ff8000", "#FF8000", "ff8000", "  #Ff8000\n", "rgb(255 128 0)", "rgb(255, 128, 0)",
                                "RGB( 255 ,128, 0 )", "rgb (255\t128  0)", "255, 128, 0", "255,128,0"});
    verify({1, 0.5, 0}, {"hsl(30 100% 50%)", "hsl(30, 100%, 50%)", "HSL(30deg 100% 50%)", "hsl(30°,100%,50%)",
                         "30°, 100%, 50%", "rgb(100% 50% 0%)", "rgb(255 127.5 0)"});
    verify(of255(255, 136, 0), {"#F80", "#f80"});
    verify(of255(255, 0, 0), {"hsl(360 100% 50%)", "hsl(0 100% 50%)"});
    verify(of255(255, 255, 255), {"hsl(200 0% 100%)", "#FFF"});
}

void ColorTextTest::readsBackWhatItWrites()
{
    for (int step = 0; step < 4096; ++step) {
        const SampledColor color = of255((step * 7) % 256, (step * 31) % 256, (step * 101) % 256);
        // These two lose nothing, the third only what it rounds.
        QCOMPARE(colorFromText(color.hexString()), color);
        QCOMPARE(colorFromText(color.rgbString()), color);
        const auto back = colorFromText(color.hslString());
        QVERIFY(back);
        const auto [hue, saturation, lightness] = back->hsl();
        QVERIFY(std::abs(lightness - color.hsl().lightness) <= 0.005 + 1e-9);
        if (color.hsl().saturation > 0.1 && lightness > 0.1 && lightness < 0.9) {
            QVERIFY(std::abs(saturation - color.hsl().saturation) <= 0.005 + 1e-9);
            QVERIFY(std::abs(std::remainder(hue - color.hsl().hueDegrees, 360)) <= 0.5 + 1e-9);
        }
    }
}

void ColorTextTest::refusesWhatIsNoColor()
{
    for (const char *text : {"",
                             " ",
                             "#",
                             "#12",
                             "#12345",
                             "#1234",
                             "#12345678",
                             "#GG0000",
                             "##FF8000",
                             "123",
                             "12",
                             "1, 2",
                             "1, 2, 3, 4",
                             "256, 0, 0",
                             "-1, 0, 0",
                             "rgb(256 0 0)",
                             "rgb(101% 0% 0%)",
                             "rgb(nan 0 0)",
                             "rgb(inf 0 0)",
                             "rgb(0 0 0",
                             "rgb 0 0 0)",
                             "rgb(0 0 0) x",
                             "rgb(30° 0 0)",
                             "rgb((0 0 0))",
                             "rgb(,,)",
                             "rgb(1, 2, )",
                             "rgba(1 2 3 / 50%)",
                             "hsl(361 0% 0%)",
                             "hsl(-1 0% 0%)",
                             "hsl(30 101% 0%)",
                             "hsl(30 1 1)",
                             "hsl(30% 1% 1%)",
                             "30°, 100, 50",
                             "hsv(30 100% 50%)",
                             "orange",
                             "https://example.org/#FF8000"})
        QVERIFY2(!parsed(text), text);
    QVERIFY(!colorFromText(QString(1 << 20, u'0')));
    QVERIFY(!colorFromText(QStringLiteral("#FF8000") + QString(1 << 20, u'0')));
}

OSTRELLE_TEST(ColorTextTest)
#include "ColorTextTest.moc"
