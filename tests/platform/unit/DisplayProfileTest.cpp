#include "platform/DisplayProfile.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <array>
#include <cmath>

#include <lcms2.h>

namespace ostrelle {

namespace {

QByteArray saved(cmsHPROFILE profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

constexpr double kGamma = 1.8;
constexpr cmsCIExyY kD65{0.3127, 0.3290, 1};

/// A wide screen: the primaries of Display P3, with a gamma of its own.
QByteArray wideScreen()
{
    const cmsCIExyYTRIPLE primaries{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
    cmsToneCurve *curve = cmsBuildGamma(nullptr, kGamma);
    std::array<cmsToneCurve *, 3> curves{curve, curve, curve};
    const QByteArray bytes = saved(cmsCreateRGBProfile(&kD65, &primaries, curves.data()));
    cmsFreeToneCurve(curve);
    return bytes;
}

double encoded(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

/// The same by the formulas of both spaces (CSS Color 4, "Display P3 to sRGB").
PickedColour expectedSrgb(const PickedColour &shown)
{
    const double r = std::pow(shown.red, kGamma);
    const double g = std::pow(shown.green, kGamma);
    const double b = std::pow(shown.blue, kGamma);
    const auto within = [](double linear) { return encoded(std::clamp(linear, 0.0, 1.0)); };
    return {within(1.2249402 * r - 0.2249402 * g), within(-0.0420570 * r + 1.0420570 * g),
            within(-0.0196376 * r - 0.0786361 * g + 1.0982735 * b)};
}

bool isClose(const PickedColour &one, const PickedColour &other, double tolerance)
{
    return std::abs(one.red - other.red) < tolerance && std::abs(one.green - other.green) < tolerance &&
           std::abs(one.blue - other.blue) < tolerance;
}

} // namespace

class DisplayProfileTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void tellsWhatAWideScreenShows()
    {
        const auto profile = DisplayProfile::create(wideScreen());
        QVERIFY(profile);
        for (int red = 0; red <= 4; ++red) {
            for (int green = 0; green <= 4; ++green) {
                for (int blue = 0; blue <= 4; ++blue) {
                    const PickedColour shown{red / 4.0, green / 4.0, blue / 4.0};
                    QVERIFY(isClose(profile->toSrgb(shown), expectedSrgb(shown), 0.004));
                }
            }
        }
        QVERIFY(isClose(profile->toSrgb({1, 1, 1}), {1, 1, 1}, 0.0005));
    }

    void changesNothingOnAPlainScreen()
    {
        const auto profile = DisplayProfile::create(saved(cmsCreate_sRGBProfile()));
        QVERIFY(profile);
        // Less than half of a step of ten bits.
        const PickedColour shown{0.2, 1023.0 / 1023, 511.0 / 1023};
        QVERIFY(isClose(profile->toSrgb(shown), shown, 0.0004));
    }

    void takesNothingElseForAProfile()
    {
        QVERIFY(!DisplayProfile::create({}));
        QVERIFY(!DisplayProfile::create(QByteArray(4096, 'x')));
        QVERIFY(!DisplayProfile::create(wideScreen().left(300)));
        cmsToneCurve *curve = cmsBuildGamma(nullptr, 2.2);
        const QByteArray grey = saved(cmsCreateGrayProfile(&kD65, curve));
        cmsFreeToneCurve(curve);
        QVERIFY(!DisplayProfile::create(grey));
    }
};

} // namespace ostrelle

using ostrelle::DisplayProfileTest;
OSTRELLE_TEST(DisplayProfileTest)

#include "DisplayProfileTest.moc"
